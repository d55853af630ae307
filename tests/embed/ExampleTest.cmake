# Installs the build, builds the example program for embedding against the installation, once with
# pkg-config and once with find_package, and runs it:
#   cmake -DBUILD=... -DSCRATCH=... -DCC=... -DFLAGS=... -P ExampleTest.cmake
file(REMOVE_RECURSE ${SCRATCH})
set(prefix ${SCRATCH}/prefix)
set(ENV{TARN_SETTINGS} ${SCRATCH}/settings)
set(ENV{PKG_CONFIG_PATH} ${prefix}/lib/pkgconfig)
unset(ENV{TARN_ROOT})
unset(ENV{LD_LIBRARY_PATH})

# Runs a command that must exit with `code`; its output is stored in `said`.
function(run code)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE ended OUTPUT_VARIABLE out ERROR_VARIABLE err)
  if(NOT ended EQUAL code)
    message(FATAL_ERROR "${ARGN}\nended with ${ended}, not ${code}:\n${out}${err}")
  endif()
  set(said "${out}${err}" PARENT_SCOPE)
endfunction()

run(0 ${CMAKE_COMMAND} --install ${BUILD} --prefix ${prefix})
file(COPY ${prefix}/share/doc/tarn/examples/embed-c DESTINATION ${SCRATCH}/make)
run(0 ${CMAKE_COMMAND} -E env CFLAGS=${FLAGS} make -C ${SCRATCH}/make/embed-c CC=${CC})
run(0 ${CMAKE_COMMAND} -S ${prefix}/share/doc/tarn/examples/embed-c -B ${SCRATCH}/cmake
  -DCMAKE_PREFIX_PATH=${prefix} -DCMAKE_C_COMPILER=${CC} -DCMAKE_C_FLAGS=${FLAGS})
run(0 ${CMAKE_COMMAND} --build ${SCRATCH}/cmake)

run(0 ${prefix}/bin/tarn register)
run(0 ${prefix}/bin/tarn unregister)
run(1 ${SCRATCH}/cmake/embed-c x.tprj)
if(NOT said STREQUAL
   "embed-c: TarnProjectManager.ProjectManager isn't registered; `tarn register` does it\n")
  message(FATAL_ERROR "without a registration it says ${said}")
endif()
run(0 ${prefix}/bin/tarn register)
run(1 ${SCRATCH}/cmake/embed-c ${SCRATCH}/nowhere.tprj)

foreach(program ${SCRATCH}/make/embed-c/embed-c ${SCRATCH}/cmake/embed-c)
  file(REMOVE_RECURSE ${SCRATCH}/blinky-avr)
  file(COPY ${prefix}/share/tarn/examples/blinky-avr DESTINATION ${SCRATCH})
  run(0 ${program} ${SCRATCH}/blinky-avr/blinky-avr.tprj)
  string(REPLACE ${SCRATCH}/blinky-avr . said "${said}")
  if(NOT said STREQUAL "the running object is this one: yes
opened ./blinky-avr.tprj
application ./blinky-avr.tapp
made of
  \"./build/Standard/blinky-avr.obj/src/main.c.o\"
  \"./build/Standard/blinky-avr.obj/src/blinker.c.o\"
  \"./build/Standard/blinky-avr.obj/src/drivers/led.c.o\"
  \"./build/Standard/blinky-avr.obj/src/drivers/ticks.c.o\"
  \"./build/Standard/blinky-avr.obj/src/drivers/uart.c.o\"
a wrong call: status 4, argument 0: argument 1 has the wrong type
log: Build: blinky-avr (Standard)
log: Building ./src/main.c
log: Building ./src/blinker.c
log: Building ./src/drivers/led.c
log: Building ./src/drivers/ticks.c
log: Building ./src/drivers/uart.c
log: Building ./blinky-avr.tapp
log: Finished.
built: yes
")
    message(FATAL_ERROR "${program} says\n${said}")
  endif()
  if(NOT EXISTS ${SCRATCH}/blinky-avr/build/Standard/blinky-avr.elf)
    message(FATAL_ERROR "${program} has built nothing")
  endif()
endforeach()

# A compiler's error message is shown.
file(APPEND ${SCRATCH}/blinky-avr/src/main.c "#error \"a < b & c\"\n")
run(1 ${SCRATCH}/cmake/embed-c ${SCRATCH}/blinky-avr/blinky-avr.tprj)
if(NOT said MATCHES "main.c[^\n]* error: #error \"a < b & c\"\n" OR NOT said MATCHES "built: no\n")
  message(FATAL_ERROR "of an error in a source it says\n${said}")
endif()

# A partially read project is refused.
file(APPEND ${SCRATCH}/blinky-avr/blinky-avr.tapp "<<<<<<< HEAD\n")
run(1 ${SCRATCH}/cmake/embed-c ${SCRATCH}/blinky-avr/blinky-avr.tprj)
if(NOT said MATCHES "log: [^\n]*read only in part[^\n]*\nbuilt: no\n$")
  message(FATAL_ERROR "of a damaged project it says\n${said}")
endif()
