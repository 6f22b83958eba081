# Warnings are errors in our own code, with every target alike.
add_compile_options("$<$<COMPILE_LANGUAGE:CXX>:-Wall;-Wextra;-Wpedantic;-Wconversion;-Wshadow;-Werror>")

# This compiler takes assignments of short texts to a std::string for overlapping copies (its bug 105651).
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    add_compile_options($<$<COMPILE_LANGUAGE:CXX>:-Wno-restrict>)
endif()

if(TSR_SANITIZE)
    add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined)
    # The code that it adds makes this compiler take members of an empty std::optional for unset ones. The release
    # preset keeps the warning.
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        add_compile_options(-Wno-maybe-uninitialized)
    endif()
endif()
