# What is installed, and the packages of it.
#
# Three components: Runtime (libraries, reference host, sample suite), Development (headers, import
# libraries, files for CMake and pkg-config) and Symbols (debug symbols, apart from the binaries).
include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

# What users may include. Each compiles on its own from where it is installed.
set(MORVEX_PUBLIC_HEADERS
  app/CAppState.h
  app/CLimitSingleExecute.h
  app/CLimitSingleInstance.h
  app/CMXWaitCursor.h
  app/CPrecisionTimer.h
  app/Common.h
  app/Export.h
  app/SharedValue.h
  app/TraceProvider.h
  log/CConsoleOutMXLog.h
  log/CDummyMXLog.h
  log/CHTMLMXLog.h
  log/CMXLog.h
  log/CMXTestInfo.h
  log/CRawTextMXLog.h
  log/QNHelper.h
  log/TestStatus.h
  messages/CDevManager.h
  messages/CDeviceInterfaceRegistrar.h
  messages/CMessageFilterSetter.h
  messages/CWMDeviceChange.h
  messages/CWMLButtonDown.h
  messages/CWindowsMessage.h
  output/CCustomMessageHandler.h
  output/CExceptionSwitch.h
  output/CFormatInfo.h
  output/COutputBuffer.h
  output/CUIUpdate.h
  platform/BaseTypes.h
  platform/Com.h
  platform/ComError.h
  platform/ComPtr.h
  platform/DeviceServices.h
  platform/Messaging.h
  platform/Registry.h
  platform/RichEdit.h
  platform/Synchronization.h
  platform/SystemText.h
  platform/Tracing.h
  platform/Version.h
  platform/Xml.h
  prompts/CMFCDialogMXUserInput.h
  prompts/CMXUserInput.h
  settings/CDUTInfo.h
  settings/CIniArgs.h
  settings/Registry.h
  siblings/Keelbase.h
  siblings/Promptline.h
  siblings/QuillonLog.h
  siblings/QuillonReports.h
  xml/CComSessionMgr.h
  xml/CDOMDoc.h
  examples/TestSuite.h)

set(headers ${CMAKE_INSTALL_INCLUDEDIR}/morvex)
set(package_files ${CMAKE_INSTALL_LIBDIR}/cmake/Morvex)
set(suites ${CMAKE_INSTALL_LIBDIR}/morvex/suites)
if(WIN32)
  # A DLL is found beside the program that needs it, and a suite beside its host.
  set(suites ${CMAKE_INSTALL_BINDIR})
endif()

get_property(libraries GLOBAL PROPERTY MORVEX_LIBRARIES)
install(TARGETS ${libraries} EXPORT MorvexTargets
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT Runtime
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT Runtime NAMELINK_COMPONENT Development
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT Development)
install(EXPORT MorvexTargets NAMESPACE Morvex:: DESTINATION ${package_files} COMPONENT Development)

configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/MorvexConfig.cmake.in
  ${CMAKE_CURRENT_BINARY_DIR}/MorvexConfig.cmake
  INSTALL_DESTINATION ${package_files} NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/MorvexConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(
  FILES
    ${CMAKE_CURRENT_BINARY_DIR}/MorvexConfig.cmake
    ${CMAKE_CURRENT_BINARY_DIR}/MorvexConfigVersion.cmake
  DESTINATION ${package_files} COMPONENT Development)

# The same lines include a header inside the repository and outside of it.
foreach(header ${MORVEX_PUBLIC_HEADERS})
  cmake_path(GET header PARENT_PATH folder)
  install(FILES ${PROJECT_SOURCE_DIR}/${header} DESTINATION ${headers}/${folder}
    COMPONENT Development)
endforeach()

# As they stand in the repository, so that the links between them lead somewhere.
set(documents ${CMAKE_INSTALL_DATAROOTDIR}/doc/morvex)
install(FILES ${PROJECT_SOURCE_DIR}/README.md DESTINATION ${documents} COMPONENT Development)
install(FILES ${PROJECT_SOURCE_DIR}/platform/README.md DESTINATION ${documents}/platform
  COMPONENT Development)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs ${PROJECT_SOURCE_DIR}/examples DESTINATION ${documents}
  COMPONENT Development PATTERN Doxyfile EXCLUDE)

# morvex_pkg_config(<name> <description> REQUIRES <names>... LIBRARY <target>): a file that finds
# everything from where it lies itself.
function(morvex_pkg_config name description)
  cmake_parse_arguments(PARSE_ARGV 2 arg "" "LIBRARY" "REQUIRES")
  set(folder ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
  file(RELATIVE_PATH up /${folder} /)
  string(REGEX REPLACE "/$" "" up ${up})
  list(JOIN arg_REQUIRES " " requires)
  set(flags "")
  set(link "")
  if(arg_LIBRARY)
    get_target_property(type ${arg_LIBRARY} TYPE)
    get_target_property(definitions ${arg_LIBRARY} INTERFACE_COMPILE_DEFINITIONS)
    if(definitions)
      list(TRANSFORM definitions PREPEND " -D" OUTPUT_VARIABLE flags)
      list(JOIN flags "" flags)
    endif()
    if(NOT type STREQUAL INTERFACE_LIBRARY)
      get_target_property(output ${arg_LIBRARY} OUTPUT_NAME)
      set(link " -l${output}")
    else()
      get_target_property(system ${arg_LIBRARY} INTERFACE_LINK_LIBRARIES)
      list(TRANSFORM system PREPEND " -l" OUTPUT_VARIABLE link)
      list(JOIN link "" link)
    endif()
  endif()
  configure_file(${PROJECT_SOURCE_DIR}/cmake/package.pc.in ${CMAKE_CURRENT_BINARY_DIR}/${name}.pc @ONLY)
  install(FILES ${CMAKE_CURRENT_BINARY_DIR}/${name}.pc DESTINATION ${folder} COMPONENT Development)
endfunction()
morvex_pkg_config(morvex-platform "Operations of the platform" LIBRARY morvex_platform)
morvex_pkg_config(keelbase "Strings, memory and conversions" LIBRARY keelbase
  REQUIRES morvex-platform)
morvex_pkg_config(quillonlog "Records of a suite and its tests" LIBRARY quillonlog
  REQUIRES morvex-platform)
morvex_pkg_config(promptline "Dialogs of the operator" LIBRARY promptline REQUIRES keelbase)
morvex_pkg_config(morvex "${PROJECT_DESCRIPTION}" LIBRARY morvex
  REQUIRES keelbase promptline quillonlog)

# Installed binaries find each other by where they lie, so that the folder can be moved.
set_target_properties(keelbase promptline quillonlog morvex PROPERTIES INSTALL_RPATH "$ORIGIN")
set(binaries keelbase promptline quillonlog morvex)
if(NOT WIN32)
  list(APPEND binaries morvex_platform)
  set_target_properties(morvex_platform PROPERTIES INSTALL_RPATH "$ORIGIN")
endif()

if(TARGET QNExe)
  file(RELATIVE_PATH to_libraries /${CMAKE_INSTALL_BINDIR} /${CMAKE_INSTALL_LIBDIR})
  file(RELATIVE_PATH from_suite /${suites} /${CMAKE_INSTALL_LIBDIR})
  set_target_properties(QNExe PROPERTIES INSTALL_RPATH "$ORIGIN/${to_libraries}")
  set_target_properties(usb_descriptors PROPERTIES INSTALL_RPATH "$ORIGIN/${from_suite}")
  install(TARGETS QNExe RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT Runtime)
  install(TARGETS usb_descriptors LIBRARY DESTINATION ${suites} COMPONENT Runtime)
  set(suite ${PROJECT_SOURCE_DIR}/examples/suites/usb_descriptors)
  install(FILES ${suite}/suite.xml ${suite}/suite.xsd DESTINATION ${suites} COMPONENT Runtime)
  install(DIRECTORY ${suite}/recordings DESTINATION ${CMAKE_INSTALL_DATADIR}/morvex
    COMPONENT Runtime FILES_MATCHING PATTERN "*.bin")
  list(APPEND binaries QNExe usb_descriptors)
endif()
include(MorvexPackage)
