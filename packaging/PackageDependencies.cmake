# Read by cpack: what each package needs that its libraries don't tell, of the list in scripts/dependencies.sh.
# The plugin and the helper belong to the very application that they were built with.

# run_time_packages(<variable> <array of scripts/dependencies.sh>)
function(run_time_packages variable array)
    execute_process(
        COMMAND bash -euc "source scripts/dependencies.sh; available_packages \"\${${array}[@]}\""
        WORKING_DIRECTORY "${CPACK_QUILLBAR_SOURCE_DIR}"
        OUTPUT_VARIABLE names
        OUTPUT_STRIP_TRAILING_WHITESPACE
        COMMAND_ERROR_IS_FATAL ANY)
    string(REPLACE "\n" ";" names "${names}")
    set(${variable} "${names}" PARENT_SCOPE)
endfunction()

set(application "quillbar (= ${CPACK_PACKAGE_VERSION})")
run_time_packages(names packages_runtime_quillbar)
string(JOIN ", " CPACK_DEBIAN_QUILLBAR_PACKAGE_DEPENDS ${names})
run_time_packages(names packages_runtime_webplayer)
string(JOIN ", " CPACK_DEBIAN_WEBPLAYER_PACKAGE_DEPENDS "${application}" ${names})
set(CPACK_DEBIAN_CALENDAR_SERVER_PACKAGE_DEPENDS "${application}")
