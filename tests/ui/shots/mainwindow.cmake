add_executable(shots_mainwindow ${CMAKE_CURRENT_LIST_DIR}/MainWindowShots.cpp)
target_include_directories(shots_mainwindow PRIVATE ${PROJECT_SOURCE_DIR}/tests)
target_link_libraries(shots_mainwindow PRIVATE tessarine_ui tessarine_core)
