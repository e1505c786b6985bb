# The library exports its entry and nothing else. LIBRARY is the library, NM the program that lists its symbols.
execute_process(COMMAND "${NM}" -DC --defined-only "${LIBRARY}" OUTPUT_VARIABLE SYMBOLS RESULT_VARIABLE RESULT
                OUTPUT_STRIP_TRAILING_WHITESPACE)
if(NOT RESULT EQUAL 0)
  message(FATAL_ERROR "The symbols of ${LIBRARY} could not be listed")
endif()
if(NOT SYMBOLS MATCHES "^[0-9a-f]+ T Captivo::CreateModule\\([^\n]*\\)$")
  message(FATAL_ERROR "Captivo::CreateModule should be the only export, but these are:\n${SYMBOLS}")
endif()
