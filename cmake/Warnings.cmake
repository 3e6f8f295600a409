# What every target of ours compiles with: tavinor_warnings for its warnings, and the sanitizers everywhere
# (or nowhere), because objects with and without them do not mix.
add_library(tavinor_warnings INTERFACE)
target_compile_options(tavinor_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wold-style-cast -Wnon-virtual-dtor -Woverloaded-virtual
  -Wcast-qual -Wimplicit-fallthrough)
if(TAVINOR_WERROR)
  target_compile_options(tavinor_warnings INTERFACE -Werror)
endif()

if(TAVINOR_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()

# The fuzzers need the core instrumented: for coverage, and with the sanitizers.
if(TAVINOR_BUILD_FUZZERS)
  add_compile_options(-fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all
    -fno-omit-frame-pointer -D_GLIBCXX_ASSERTIONS)
  add_link_options(-fsanitize=address,undefined)
endif()
