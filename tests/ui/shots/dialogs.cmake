# Screenshots of the options dialog, the log windows and the about box.
add_executable(shots_dialogs ${CMAKE_CURRENT_LIST_DIR}/shots_dialogs.cpp)
target_include_directories(shots_dialogs PRIVATE ${PROJECT_SOURCE_DIR}/tests)
target_link_libraries(shots_dialogs PRIVATE tessarine_ui tessarine_core)
