# Runs the built program headless in a fresh folder against a phone that is not
# there, and checks its exit status (EXPECT) and, for a run, its summary.
file(REMOVE_RECURSE "${WORK}")
file(MAKE_DIRECTORY "${WORK}")
execute_process(
    COMMAND "${PROGRAM}" --headless "--config=${WORK}/config" "--home=${WORK}/home" "--pim=${WORK}/pim"
            "--port=${WORK}/no-such-phone" ${SWITCH}
    RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE err TIMEOUT 60)
if(NOT status EQUAL EXPECT)
    message(FATAL_ERROR "exit status ${status}, expected ${EXPECT}\n${out}\n${err}")
endif()
if(SWITCH AND NOT out MATCHES "Summary\nTransfered data:\t\t0\n.*Program errors:\t\t[1-9]")
    message(FATAL_ERROR "no summary with the error on standard output:\n${out}")
endif()
if(NOT SWITCH AND NOT err MATCHES "needs BOTH, VCAL or VCARD")
    message(FATAL_ERROR "no usage message on standard error:\n${err}")
endif()
