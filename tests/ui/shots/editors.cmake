# shots_editors OUTDIR LANG: the editors, the date frame, the status dialog, the
# splash and the compare dialog, filled with realistic data, as PNG files.
add_executable(shots_editors ${CMAKE_CURRENT_LIST_DIR}/shots_editors.cpp)
target_link_libraries(shots_editors PRIVATE tessarine_ui)
