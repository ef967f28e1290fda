# Runs ordix-cli on SCRIPT in the scratch folder WORK and compares its
# standard output with the .expected file beside the script, and, when there
# are such files, its standard error with the .errors file and its exit status
# with the .status file. A .args file holds options put before the script's
# name.
cmake_minimum_required(VERSION 3.25)
get_filename_component(dir ${SCRIPT} DIRECTORY)
get_filename_component(name ${SCRIPT} NAME_WLE)
set(expected_file ${dir}/${name}.expected)
set(status_file ${dir}/${name}.status)
set(errors_file ${dir}/${name}.errors)
set(args_file ${dir}/${name}.args)
set(args)
if(EXISTS ${args_file})
  file(STRINGS ${args_file} args LIMIT_COUNT 1)
  separate_arguments(args UNIX_COMMAND "${args}")
endif()

file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK})
# EMULATOR runs a cross-built program (wine for a Windows one).
execute_process(COMMAND ${EMULATOR} ${CLI} ${args} ${SCRIPT}
  WORKING_DIRECTORY ${WORK}
  OUTPUT_FILE ${WORK}/actual.out
  ERROR_VARIABLE errors
  RESULT_VARIABLE status)

if(NOT EXISTS ${expected_file})
  message(FATAL_ERROR "${name}: no ${name}.expected")
endif()
file(READ ${expected_file} expected)
file(READ ${WORK}/actual.out actual)
if(CLI MATCHES "\\.exe$")
  # Text written on Windows ends its lines with CR LF.
  string(REPLACE "\r\n" "\n" actual "${actual}")
  string(REPLACE "\r\n" "\n" errors "${errors}")
  file(WRITE ${WORK}/actual.out "${actual}")
endif()
if(NOT actual STREQUAL expected)
  execute_process(COMMAND diff -u ${expected_file} ${WORK}/actual.out OUTPUT_VARIABLE difference)
  message(FATAL_ERROR "${name}: output differs from ${name}.expected\n${difference}\nstandard error:\n${errors}")
endif()
if(EXISTS ${errors_file})
  file(READ ${errors_file} expected_errors)
  if(NOT errors STREQUAL expected_errors)
    message(FATAL_ERROR "${name}: standard error differs from ${name}.errors:\n${errors}")
  endif()
endif()
if(EXISTS ${status_file})
  file(STRINGS ${status_file} want LIMIT_COUNT 1)
  string(STRIP "${want}" want)
  if(NOT status STREQUAL want)
    message(FATAL_ERROR "${name}: exit status ${status}, expected ${want}\nstandard error:\n${errors}")
  endif()
endif()
