# The options dialog, the about box, the help, the log windows and their printing.
target_sources(tessarine_ui PRIVATE
    dialogs/Einstellungen.cpp
    dialogs/frmAbout.cpp
    dialogs/CallHelp.cpp
    dialogs/Forms.cpp
    log/LogPrinting.cpp
    log/log_Form.cpp
    log/logSummaryForm.cpp)
set_target_properties(tessarine_ui PROPERTIES AUTOMOC ON)
# The user guide travels inside the program, which puts it into HomeDir/Help.
qt_add_resources(tessarine_ui tessarine_help
    PREFIX /tessarine/help
    BASE ${PROJECT_SOURCE_DIR}/docs/help
    FILES ${PROJECT_SOURCE_DIR}/docs/help/HELPFILE_HVX50.html)
install(FILES ${PROJECT_SOURCE_DIR}/docs/help/HELPFILE_HVX50.html DESTINATION share/tessarine/help COMPONENT tessarine)
