# The folder that the system shows as one application: a bundle on macOS, an application wrapper on GNUstep.
set(MINIMUM_MACOS 10.13)
if(CMAKE_OSX_DEPLOYMENT_TARGET)
  set(MINIMUM_MACOS ${CMAKE_OSX_DEPLOYMENT_TARGET})
endif()
configure_file(resources/Info.plist.in ${CMAKE_BINARY_DIR}/Info.plist @ONLY)

if(APPLE)
  set_target_properties(BackupEngine PROPERTIES MACOSX_BUNDLE ON MACOSX_BUNDLE_INFO_PLIST ${CMAKE_BINARY_DIR}/Info.plist)
  find_program(IBTOOL ibtool REQUIRED)  # comes with Xcode
  find_program(CODESIGN codesign REQUIRED)
  set(SIGN_AS "-" CACHE STRING "Identity that signs the program; - for none: then what the user allows it ends with each build")
  set(resources $<TARGET_BUNDLE_CONTENT_DIR:BackupEngine>/Resources)
  set(xib ${CMAKE_SOURCE_DIR}/resources/MainMenu.xib)
  set_property(TARGET BackupEngine APPEND PROPERTY LINK_DEPENDS ${xib} ${CMAKE_BINARY_DIR}/Info.plist)
  add_custom_command(TARGET BackupEngine POST_BUILD
    COMMAND ${CMAKE_COMMAND} -E make_directory ${resources}
    COMMAND ${IBTOOL} --errors --warnings --minimum-deployment-target ${MINIMUM_MACOS}
      --compile ${resources}/MainMenu.nib ${xib}
    COMMAND ${CODESIGN} --force --sign ${SIGN_AS} $<TARGET_BUNDLE_DIR:BackupEngine>
    VERBATIM)
  return()
endif()

set(wrapper ${CMAKE_BINARY_DIR}/BackupEngine.app)
set_target_properties(BackupEngine PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${wrapper})
function(wrapper_resource source name)
  add_custom_command(OUTPUT ${wrapper}/Resources/${name}
    COMMAND ${CMAKE_COMMAND} -E copy ${source} ${wrapper}/Resources/${name}
    DEPENDS ${source})
  set_property(GLOBAL APPEND PROPERTY wrapper_resources ${wrapper}/Resources/${name})
endfunction()
wrapper_resource(${CMAKE_SOURCE_DIR}/resources/MainMenu.xib MainMenu.xib)
wrapper_resource(${CMAKE_BINARY_DIR}/Info.plist Info-gnustep.plist)
get_property(resources GLOBAL PROPERTY wrapper_resources)
add_custom_target(wrapper_resources ALL DEPENDS ${resources})
add_dependencies(BackupEngine wrapper_resources)
