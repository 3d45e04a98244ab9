# A group of measurements: add_benchmark_group(NAME [DEPENDS TARGET…] COMMAND PROGRAM [ARGUMENT…]).
# Scripts/benchmark builds its target benchmark-NAME and reads how to start it from a file of the
# build directory. Nothing of it is part of the default build.
add_custom_target(benchmarks)
file(REMOVE_RECURSE ${CMAKE_BINARY_DIR}/benchmark-groups)

function(add_benchmark_group name)
  cmake_parse_arguments(PARSE_ARGV 1 ARG "" "" "DEPENDS;COMMAND")
  list(JOIN ARG_COMMAND "\n" command)
  file(GENERATE OUTPUT ${CMAKE_BINARY_DIR}/benchmark-groups/${name} CONTENT "${command}\n")
  add_custom_target(benchmark-${name} DEPENDS ${ARG_DEPENDS})
  add_dependencies(benchmarks benchmark-${name})
endfunction()
