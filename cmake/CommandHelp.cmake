# Writes the help of `stampwise stamp` and `stampwise info` as help2man
# include sections. Usage: cmake -DPROGRAM=... -DOUTPUT=... -P CommandHelp.cmake
set(ENV{QT_QPA_PLATFORM} offscreen)
set(ENV{ASAN_OPTIONS} detect_leaks=0)
set(_text "")
foreach(command stamp info)
  execute_process(COMMAND ${PROGRAM} ${command} --help OUTPUT_VARIABLE _help
                  RESULT_VARIABLE _status)
  if(NOT _status EQUAL 0)
    message(FATAL_ERROR "${PROGRAM} ${command} --help failed: ${_status}")
  endif()
  # Kept as the program lays it out; roff needs its escape character, minus
  # signs and leading dots spelled out.
  string(REPLACE "\\" "\\e" _help "${_help}")
  string(REPLACE "-" "\\-" _help "${_help}")
  string(REGEX REPLACE "(^|\n)([.'])" "\\1\\\\&\\2" _help "${_help}")
  string(TOUPPER ${command} _title)
  string(APPEND _text "[${_title} COMMAND]\n.nf\n${_help}.fi\n\n")
endforeach()
file(WRITE ${OUTPUT} "${_text}")
