# What a Windows package holds besides: the compiler's own DLLs, so that it runs where no compiler is
# installed, and the debug symbols that the stripped binaries name.
foreach(dll libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll)
  execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${dll}
    OUTPUT_VARIABLE file OUTPUT_STRIP_TRAILING_WHITESPACE)
  if(NOT IS_ABSOLUTE ${file})
    find_file(MORVEX_${dll} ${dll} PATH_SUFFIXES lib bin REQUIRED)
    set(file ${MORVEX_${dll}})
  endif()
  install(PROGRAMS ${file} DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT Runtime)
endforeach()

set(symbols ${PROJECT_BINARY_DIR}/symbols)
file(MAKE_DIRECTORY ${symbols})
foreach(binary ${binaries})
  set(folder ${CMAKE_INSTALL_BINDIR})
  set(installed "\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${folder}/$<TARGET_FILE_NAME:${binary}>")
  set(apart ${symbols}/$<TARGET_FILE_NAME:${binary}>.debug)
  install(CODE "
    execute_process(COMMAND_ERROR_IS_FATAL ANY
      COMMAND ${CMAKE_OBJCOPY} --only-keep-debug $<TARGET_FILE:${binary}> ${apart})
    execute_process(COMMAND_ERROR_IS_FATAL ANY
      COMMAND ${CMAKE_STRIP} --strip-unneeded \"${installed}\")
    execute_process(COMMAND_ERROR_IS_FATAL ANY
      COMMAND ${CMAKE_OBJCOPY} --add-gnu-debuglink=${apart} \"${installed}\")"
    COMPONENT Runtime)
  install(FILES ${apart} DESTINATION ${folder} COMPONENT Symbols)
endforeach()
