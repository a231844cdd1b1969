# The editors, the date frame, the status dialog and the compare dialog, as real
find_package(Qt6 REQUIRED COMPONENTS Test)
# windows on the offscreen platform; the editor saves to the emulated phone.
tessarine_add_test(tests_ui_editors
    SOURCES
        WidgetTestMain.cpp
        DateFrameTest.cpp
        DateFrameRereadTest.cpp
        MobileEntryTest.cpp
        StatusDialogTest.cpp
        EntryShowTest.cpp
        ContactEntryTest.cpp
        ${PROJECT_SOURCE_DIR}/tests/phone/EmulatedPhone.cpp
    LINKS tessarine_ui Qt6::Test)
add_dependencies(tests_ui_editors phone-emulator)
