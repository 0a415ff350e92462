# How a folder under src/ becomes a target, and how the targets are compiled.

add_library(randblatt_options INTERFACE)
target_include_directories(randblatt_options INTERFACE "${PROJECT_SOURCE_DIR}/src")
target_compile_options(randblatt_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align
    $<$<BOOL:${QUILLBAR_WARNINGS_AS_ERRORS}>:-Werror>)
target_compile_definitions(randblatt_options INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING QT_NO_KEYWORDS
    QT_NO_CONTEXTLESS_CONNECT QT_USE_QSTRINGBUILDER)

# The program reads what strangers wrote: notes, invitations, answers of servers. What is overwritten by a fault
# of ours shall end the program and not take it over. Checked by scripts/check-hardening.py.
target_compile_options(randblatt_options INTERFACE -fstack-protector-strong)
if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64|i.86)$")
    target_compile_options(randblatt_options INTERFACE -fcf-protection=full)
endif()
target_link_options(randblatt_options INTERFACE -Wl,-z,relro,-z,now,-z,noexecstack)
if(NOT QUILLBAR_SANITIZE)
    # Takes an optimising compiler; and Debian's own default level is lower.
    target_compile_options(randblatt_options INTERFACE
        "$<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=3>")
endif()

if(QUILLBAR_SANITIZE)
    target_compile_options(randblatt_options INTERFACE -fsanitize=${QUILLBAR_SANITIZE} -fno-omit-frame-pointer)
    target_link_options(randblatt_options INTERFACE -fsanitize=${QUILLBAR_SANITIZE})
endif()

# Half of the time that a source takes goes into the headers of Qt's core. ccache does not get along with
# precompiled headers, and saves more where it is.
if(NOT CMAKE_CXX_COMPILER_LAUNCHER)
    file(CONFIGURE OUTPUT "${PROJECT_BINARY_DIR}/precompiled.cpp" CONTENT "")
    add_library(randblatt_precompiled OBJECT "${PROJECT_BINARY_DIR}/precompiled.cpp")
    set_target_properties(randblatt_precompiled PROPERTIES AUTOMOC OFF)
    target_link_libraries(randblatt_precompiled PRIVATE randblatt_options Qt6::Core)
    target_precompile_headers(randblatt_precompiled PRIVATE
        <QtCore/QtCore> <algorithm> <chrono> <functional> <memory> <optional> <vector>)
endif()

# Gives a target that links randblatt_options and Qt6::Core the precompiled header.
function(randblatt_precompile target)
    if(TARGET randblatt_precompiled)
        target_precompile_headers(${target} REUSE_FROM randblatt_precompiled)
    endif()
endfunction()

# randblatt_library(<target> [API …] SOURCES … LINK … [PRIVATE_LINK …])
# A plain C++ room. API: those of the headers that other rooms may include (scripts/check-rooms.py).
function(randblatt_library target)
    cmake_parse_arguments(ARG "" "" "API;SOURCES;LINK;PRIVATE_LINK" ${ARGN})
    add_library(${target} STATIC ${ARG_SOURCES})
    target_link_libraries(${target} PUBLIC randblatt_options ${ARG_LINK} PRIVATE ${ARG_PRIVATE_LINK})
    randblatt_precompile(${target})
endfunction()

# randblatt_wayland_protocols(<target> <XML file> …)
# A library of what wayland-scanner makes of protocols for a client; the code that it generates is C.
function(randblatt_wayland_protocols target)
    set(sources "")
    foreach(file IN LISTS ARGN)
        cmake_path(ABSOLUTE_PATH file)
        cmake_path(GET file STEM name)
        set(header "${CMAKE_CURRENT_BINARY_DIR}/${name}-client-protocol.h")
        set(source "${CMAKE_CURRENT_BINARY_DIR}/${name}-protocol.c")
        add_custom_command(OUTPUT "${header}"
            COMMAND "${WAYLAND_SCANNER}" client-header "${file}" "${header}" DEPENDS "${file}" VERBATIM)
        add_custom_command(OUTPUT "${source}"
            COMMAND "${WAYLAND_SCANNER}" private-code "${file}" "${source}" DEPENDS "${file}" VERBATIM)
        list(APPEND sources "${header}" "${source}")
    endforeach()
    add_library(${target} STATIC ${sources})
    target_include_directories(${target} PUBLIC "${CMAKE_CURRENT_BINARY_DIR}")
    target_link_libraries(${target} PUBLIC PkgConfig::WAYLAND)
endfunction()

# randblatt_qml_module(<target> URI <uri> [API …] [SOURCES …] [QML …] LINK … [DEPENDENCIES …])
# A room with views, or with types that views use: one library and one QML module.
function(randblatt_qml_module target)
    cmake_parse_arguments(ARG "" "URI" "API;SOURCES;QML;LINK;DEPENDENCIES;SINGLETONS" ${ARGN})
    if(ARG_SINGLETONS)
        set_source_files_properties(${ARG_SINGLETONS} PROPERTIES QT_QML_SINGLETON_TYPE TRUE)
    endif()
    qt_add_library(${target} STATIC)
    target_link_libraries(${target} PUBLIC randblatt_options Qt6::Qml ${ARG_LINK})
    # The generated type registration includes the headers by their file names.
    target_include_directories(${target} PRIVATE "${CMAKE_CURRENT_SOURCE_DIR}")
    # Byte code alone: compiling the generated C++ would take longer than everything else, for handlers that
    # are a line or two.
    set_target_properties(${target} PROPERTIES QT_QMLCACHEGEN_ARGUMENTS "--only-bytecode")
    qt_add_qml_module(${target}
        URI ${ARG_URI}
        VERSION 1.0
        RESOURCE_PREFIX "/qt/qml"
        SOURCES ${ARG_SOURCES}
        QML_FILES ${ARG_QML} ${ARG_SINGLETONS}
        # Not as imports: those would be loaded with the module, also where a view makes no use of them.
        DEPENDENCIES ${ARG_DEPENDENCIES}
    )
    randblatt_precompile(${target})
endfunction()

# randblatt_import_qml(<executable> <module target> …)
# Links QML modules into an executable, together with the modules that they import.
function(randblatt_import_qml executable)
    set(imports "")
    foreach(module IN LISTS ARGN)
        get_target_property(uri ${module} QT_QML_MODULE_URI)
        string(REPLACE "." "_" plugin "${uri}Plugin")
        string(APPEND imports "Q_IMPORT_QML_PLUGIN(${plugin})\n")
        target_link_libraries(${executable} PRIVATE ${module} ${module}plugin)
    endforeach()
    set(source "${CMAKE_CURRENT_BINARY_DIR}/${executable}_qmlplugins.cpp")
    file(CONFIGURE OUTPUT "${source}" CONTENT "#include <QtQml/QQmlExtensionPlugin>\n${imports}" @ONLY)
    target_sources(${executable} PRIVATE "${source}")
endfunction()
