# What every target of the project shares: warnings, sanitizers, the compiler cache and precompiled headers.

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER
      env CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
      CCACHE_BASEDIR=${CMAKE_SOURCE_DIR} ${CCACHE_PROGRAM})
endif()

add_library(captivo_options INTERFACE)
target_compile_options(captivo_options INTERFACE -Wall -Wextra -Wpedantic -Werror -Wshadow -Wnon-virtual-dtor
                                                 -Woverloaded-virtual -fno-common)
target_compile_definitions(captivo_options INTERFACE _GLIBCXX_ASSERTIONS BOOST_BIND_GLOBAL_PLACEHOLDERS
                                                     QT_NO_KEYWORDS)
target_include_directories(captivo_options INTERFACE "${CMAKE_SOURCE_DIR}/Host" "${CMAKE_SOURCE_DIR}/Handlers"
                                                     "${CMAKE_SOURCE_DIR}")
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # Precompiled headers and ccache go together only with this.
  target_compile_options(captivo_options INTERFACE -fpch-preprocess)
endif()
if(CAPTIVO_SANITIZE)
  target_compile_options(captivo_options INTERFACE -fsanitize=${CAPTIVO_SANITIZE} -fno-omit-frame-pointer -g1)
  target_link_options(captivo_options INTERFACE -fsanitize=${CAPTIVO_SANITIZE})
  if(CAPTIVO_SANITIZE MATCHES "undefined")
    target_compile_options(captivo_options INTERFACE -fno-sanitize-recover=undefined)
  endif()
endif()

# captivo_host_library(NAME [LINK libraries...])
#
# One folder of Host (or Formats): every .cpp in it, as an object library named host_NAME. All of them together are the
# shared library captivo-host, which the program, the driver, the tests and the loaded panel have in common.
function(captivo_host_library NAME)
  cmake_parse_arguments(ARG "" "" "LINK" ${ARGN})
  file(GLOB SOURCES CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.cpp")
  if(NOT SOURCES OR (CAPTIVO_ONLY AND NOT NAME IN_LIST CAPTIVO_ONLY))
    return()
  endif()
  add_library(host_${NAME} OBJECT ${SOURCES})
  target_link_libraries(host_${NAME} PRIVATE captivo_options ${ARG_LINK})
  target_precompile_headers(host_${NAME} PRIVATE "${CMAKE_SOURCE_DIR}/cmake/pch.h")
  set_property(GLOBAL APPEND PROPERTY CAPTIVO_HOST_OBJECTS "$<TARGET_OBJECTS:host_${NAME}>")
  set_property(GLOBAL APPEND PROPERTY CAPTIVO_HOST_LINK ${ARG_LINK})
endfunction()
