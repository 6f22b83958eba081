# tsr_header_library(<package>): a library of headers alone, as the target <package>::<package>. The headers of this
# machine serve every target, but the folder that they share with others is only for this machine: for another
# target they are linked to from a folder of their own.
set(TSR_HEADERS_OF_CLI11 CLI)
set(TSR_HEADERS_OF_nlohmann_json nlohmann)

function(tsr_header_library package)
    if(TARGET ${package}::${package})
        return()
    endif()
    if(NOT CMAKE_CROSSCOMPILING)
        find_package(${package} REQUIRED GLOBAL)
        return()
    endif()
    set(folder ${TSR_HEADERS_OF_${package}})
    if(NOT IS_DIRECTORY /usr/include/${folder})
        message(FATAL_ERROR "The headers of ${package} aren't in /usr/include/${folder}")
    endif()
    file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/headers)
    file(CREATE_LINK /usr/include/${folder} ${CMAKE_BINARY_DIR}/headers/${folder} SYMBOLIC)
    add_library(${package}::${package} INTERFACE IMPORTED GLOBAL)
    target_include_directories(${package}::${package} SYSTEM INTERFACE ${CMAKE_BINARY_DIR}/headers)
endfunction()
