# Types KEYS into ordix-cli on a pseudo-terminal (DRIVER, the pty_drive
# program) in the scratch folder WORK, with XDG_DATA_HOME pointing into it,
# and checks what the terminal showed against the regular expression EXPECT
# (after carriage returns, bells and cursor sequences are taken out; \n in
# EXPECT stands for a line end), that the program ended with status 0, and,
# when HISTORY is given, the history file against that expression.
cmake_minimum_required(VERSION 3.25)
file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK})
set(ENV{XDG_DATA_HOME} ${WORK}/data)
execute_process(COMMAND ${DRIVER} "${KEYS}" ${CLI}
  WORKING_DIRECTORY ${WORK}
  OUTPUT_VARIABLE shown
  RESULT_VARIABLE status)
string(ASCII 7 bell)
string(ASCII 8 backspace)
string(ASCII 27 escape)
string(REPLACE "\r" "" shown "${shown}")
string(REPLACE "${bell}" "" shown "${shown}")
string(REPLACE "${backspace}" "" shown "${shown}")
string(REGEX REPLACE "${escape}\\[[0-9;?]*[A-Za-z]" "" shown "${shown}")
string(REPLACE "\\n" "\n" EXPECT "${EXPECT}")
if(NOT status EQUAL 0)
  message(FATAL_ERROR "exit status ${status}; the terminal showed:\n${shown}")
endif()
if(NOT shown MATCHES "${EXPECT}")
  message(FATAL_ERROR "no match for\n${EXPECT}\nthe terminal showed:\n${shown}")
endif()
if(DEFINED HISTORY)
  set(history_file ${WORK}/data/ordix/history)
  if(NOT EXISTS ${history_file})
    message(FATAL_ERROR "no history file ${history_file}")
  endif()
  file(READ ${history_file} history)
  string(REPLACE "\\n" "\n" HISTORY "${HISTORY}")
  if(NOT history MATCHES "${HISTORY}")
    message(FATAL_ERROR "history file does not match\n${HISTORY}\nit holds:\n${history}")
  endif()
endif()
