# For the preset "coverage": everything counts the lines and branches it runs.
add_compile_options(--coverage)
add_link_options(--coverage)

# The counts are written when a process exits, and the program leaves by _Exit, which writes nothing. Here, and in no
# other build, _Exit writes them first.
add_library(tavinor_counted_exit STATIC ${PROJECT_SOURCE_DIR}/tests/support/CountedExit.cpp)
add_link_options(-Wl,--wrap=_Exit)
link_libraries(tavinor_counted_exit)
