# Installs the build into a separate folder and checks the result from the view of a user without
# the sources:
#   cmake -DBUILD=... -DPREFIX=... -DLIBDIR=... -DDESKTOP=0|1 -DMANUAL=0|1 -P InstallTest.cmake
file(REMOVE_RECURSE ${PREFIX})
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD} --prefix ${PREFIX}
  OUTPUT_QUIET RESULT_VARIABLE failed)
if(failed)
  message(FATAL_ERROR "installing failed")
endif()

set(wanted
  bin/tarn
  ${LIBDIR}/tarn-guard
  ${LIBDIR}/tarn-checksum
  ${LIBDIR}/tarn-embed
  ${LIBDIR}/tarn-uf2
  ${LIBDIR}/tarn-version
  share/tarn/config/projectmanager.config
  share/tarn/config/message.xslt
  share/tarn/bin/k418/k418.pl
  share/tarn/config/tools/avr-gcc.tools
  share/tarn/config/options/avr-gcc.options
  share/tarn/config/resources/errors.bmp
  share/tarn/targets/avr.xml
  share/tarn/examples/blinky-avr/blinky-avr.tprj
  share/doc/tarn/command-line.md
  share/doc/tarn/import.md
  share/doc/tarn/LICENSE
  share/bash-completion/completions/tarn
  share/zsh/site-functions/_tarn
  share/fish/vendor_completions.d/tarn.fish)
if(DESKTOP)
  list(APPEND wanted
    bin/tarn-ide
    share/applications/org.tarn.Tarn.desktop
    share/icons/hicolor/scalable/apps/org.tarn.Tarn.svg
    share/icons/hicolor/scalable/mimetypes/application-x-tarn-application.svg
    share/icons/hicolor/scalable/mimetypes/application-x-tarn-project.svg
    share/metainfo/org.tarn.Tarn.metainfo.xml
    share/mime/packages/org.tarn.Tarn.xml
    share/tarn/translations/tarn_de.qm
    share/tarn/translations/tarn_fr.qm)
endif()
set(pages)
if(MANUAL)
  set(pages share/man/man1/tarn.1)
  if(DESKTOP)
    list(APPEND pages share/man/man1/tarn-ide.1)
  endif()
  list(APPEND wanted ${pages})
endif()
foreach(file ${wanted})
  if(NOT EXISTS ${PREFIX}/${file})
    message(SEND_ERROR "${file} isn't installed")
    continue()
  endif()
  file(SIZE ${PREFIX}/${file} size)
  if(size EQUAL 0)
    message(SEND_ERROR "${file} is empty")
  endif()
endforeach()

# A manual page has the options from the program's help and the sections from its include file.
foreach(page ${pages})
  file(READ ${PREFIX}/${page} text)
  foreach(part "-version" TARN_ROOT "SH FILES")
    if(NOT text MATCHES "${part}")
      message(SEND_ERROR "${page} doesn't contain ${part}")
    endif()
  endforeach()
endforeach()
if(MANUAL)
  file(READ ${PREFIX}/share/man/man1/tarn.1 text)
  execute_process(COMMAND ${PREFIX}/bin/tarn --help OUTPUT_VARIABLE help)
  string(REGEX REPLACE "\nOptions\n.*" "" help "${help}")
  string(REGEX MATCHALL "\n  [a-z][a-z-]+" commands "${help}")
  foreach(command build ${commands} "options explain")
    string(STRIP "${command}" command)
    if(NOT text MATCHES "\n.SS \"tarn ${command}")
      message(SEND_ERROR "tarn.1 doesn't describe ${command}")
    endif()
  endforeach()
endif()

execute_process(COMMAND ${CMAKE_CURRENT_LIST_DIR}/../../scripts/check-runpath ${PREFIX}
  ERROR_VARIABLE complained OUTPUT_VARIABLE said RESULT_VARIABLE failed)
if(failed)
  message(SEND_ERROR "${said}${complained}")
endif()

# The program must find its libraries and its data by itself; the location of the data shows in the
# path of an option's definition.
set(ENV{TARN_SETTINGS} ${PREFIX}/settings)
set(ENV{XDG_DATA_HOME} ${PREFIX}/data)
unset(ENV{TARN_ROOT})
unset(ENV{LD_LIBRARY_PATH})
execute_process(
  COMMAND ${PREFIX}/bin/tarn options explain --json Compiler.Optimize
          ${PREFIX}/share/tarn/examples/blinky-avr/blinky-avr.tprj
  OUTPUT_VARIABLE said ERROR_VARIABLE complained RESULT_VARIABLE failed)
if(failed OR NOT said MATCHES "\"definedIn\": \"${PREFIX}/share/tarn/config/")
  message(FATAL_ERROR "the installed program doesn't find its data: ${said}${complained}")
endif()

# Without its data, no data at another location may be used.
file(RENAME ${PREFIX}/share/tarn/config ${PREFIX}/share/tarn/away)
execute_process(COMMAND ${PREFIX}/bin/tarn targets
  OUTPUT_VARIABLE said ERROR_VARIABLE complained RESULT_VARIABLE failed)
file(RENAME ${PREFIX}/share/tarn/away ${PREFIX}/share/tarn/config)
if(NOT failed EQUAL 3 OR NOT complained MATCHES "is incomplete: ${PREFIX}/share/tarn/config/")
  message(FATAL_ERROR "without its data the installed program says: ${said}${complained}")
endif()
