# Warnings and sanitizers for the project's own code.

add_library(mmi_warnings INTERFACE)
target_compile_options(mmi_warnings INTERFACE -Wall -Wextra -Werror)

set(MMI_SANITIZE "" CACHE STRING "Sanitizer build: empty, 'address' (with undefined) or 'thread'")
if(MMI_SANITIZE STREQUAL "address")
  add_compile_options(-fsanitize=address,undefined -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
  add_link_options(-fsanitize=address,undefined)
elseif(MMI_SANITIZE STREQUAL "thread")
  add_compile_options(-fsanitize=thread -fno-omit-frame-pointer)
  add_link_options(-fsanitize=thread)
elseif(NOT MMI_SANITIZE STREQUAL "")
  message(FATAL_ERROR "MMI_SANITIZE must be empty, 'address' or 'thread'")
endif()
