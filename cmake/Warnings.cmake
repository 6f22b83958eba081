# Warnings are errors in our own code, with every target alike.
add_compile_options(-Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)

if(TSR_SANITIZE)
    add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined)
endif()
