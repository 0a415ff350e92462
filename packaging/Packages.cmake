# The Debian packages, one for each component. Nothing is run when they are installed: desktop files, icons and
# manual pages are taken up by the triggers of the packages that own those folders.

find_program(GZIP_PROGRAM gzip)
if(NOT GZIP_PROGRAM)
    return()
endif()

set(components quillbar)
if(TARGET quillbar-webplayer)
    list(APPEND components webplayer)
endif()
if(TARGET quillbar_calendar_server)
    list(APPEND components calendar_server)
endif()

set(changelog "${CMAKE_CURRENT_BINARY_DIR}/changelog.gz")
set(manual "${CMAKE_CURRENT_BINARY_DIR}/quillbar.1.gz")
set(webplayer_manual "${CMAKE_CURRENT_BINARY_DIR}/quillbar-webplayer.1.gz")
foreach(compressed IN LISTS changelog manual webplayer_manual)
    get_filename_component(plain "${compressed}" NAME_WLE)
    add_custom_command(OUTPUT "${compressed}"
        COMMAND sh -c "\"$0\" -9 -n -c \"$1\" >\"$2\""
            "${GZIP_PROGRAM}" "${CMAKE_CURRENT_SOURCE_DIR}/${plain}" "${compressed}"
        DEPENDS "${plain}" VERBATIM)
endforeach()
add_custom_target(quillbar_documentation ALL DEPENDS "${changelog}" "${manual}" "${webplayer_manual}")
install(FILES "${manual}" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1")
if("webplayer" IN_LIST components)
    install(FILES "${webplayer_manual}" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1" COMPONENT webplayer)
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME quillbar)
set(CPACK_PACKAGE_VENDOR Randblatt)
set(CPACK_PACKAGE_CONTACT "Randblatt <quillbar@randblatt.com>")
set(CPACK_PACKAGE_DIRECTORY "${CMAKE_BINARY_DIR}/packages")
set(CPACK_PACKAGING_INSTALL_PREFIX "${CMAKE_INSTALL_PREFIX}")
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL ${components})
set(CPACK_COMPONENTS_GROUPING IGNORE)
# The dependencies that linking does not show.
set(CPACK_PROJECT_CONFIG_FILE "${CMAKE_CURRENT_SOURCE_DIR}/PackageDependencies.cmake")
set(CPACK_QUILLBAR_SOURCE_DIR "${PROJECT_SOURCE_DIR}")

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(CPACK_DEBIAN_QUILLBAR_PACKAGE_NAME quillbar)
set(CPACK_DEBIAN_QUILLBAR_PACKAGE_RECOMMENDS "quillbar-calendar-server, quillbar-webplayer, libglib2.0-bin")
set(CPACK_DEBIAN_QUILLBAR_DESCRIPTION "sidebar of glass for tasks, notes, appointments and music
Quillbar slides in where the pointer rests at the edge of the screen, and out
again when it leaves. On it are cards: a to-do list, a calendar, notes, and
controls for the music that plays. Its texts are German.")

set(CPACK_DEBIAN_WEBPLAYER_PACKAGE_NAME quillbar-webplayer)
set(CPACK_DEBIAN_WEBPLAYER_PACKAGE_ENHANCES quillbar)
set(CPACK_DEBIAN_WEBPLAYER_DESCRIPTION "playback of the music service's tracks in Quillbar
With this helper the sidebar Quillbar is a playback device of its own. It runs
the music service's page in a web engine, and only while it is needed.")

set(CPACK_DEBIAN_CALENDAR_SERVER_PACKAGE_NAME quillbar-calendar-server)
set(CPACK_DEBIAN_CALENDAR_SERVER_PACKAGE_RECOMMENDS evolution-data-server)
set(CPACK_DEBIAN_CALENDAR_SERVER_DESCRIPTION "appointments of the desktop's calendars in Quillbar
With this plugin the sidebar Quillbar shows and adds appointments in the
calendars of the desktop (Evolution Data Server). Without it there is a
calendar in a file.")

foreach(component IN LISTS components)
    string(TOUPPER "${component}" upper)
    set(documentation "${CMAKE_INSTALL_DATADIR}/doc/${CPACK_DEBIAN_${upper}_PACKAGE_NAME}")
    install(FILES copyright "${changelog}" DESTINATION "${documentation}" COMPONENT ${component})
endforeach()

include(CPack)
