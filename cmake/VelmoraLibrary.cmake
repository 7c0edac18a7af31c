# One way to declare a library of src/: every .cpp and .ui file of the calling
# folder (not its subfolders; a program's main.cpp stays out), included from
# the one root src/, so headers are always written "library/Header.h".
function(velmora_library name)
    file(GLOB sources CONFIGURE_DEPENDS
        ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp ${CMAKE_CURRENT_SOURCE_DIR}/*.ui)
    list(FILTER sources EXCLUDE REGEX "/main\\.cpp$")
    add_library(${name} STATIC ${sources} ${ARGN})
    target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
endfunction()
