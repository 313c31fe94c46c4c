# What `cmake --install` puts under the prefix, and the Debian package made of it.
set(_res ${CMAKE_SOURCE_DIR}/resources)

install(TARGETS stampwise RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES ${_res}/welcome.html DESTINATION ${STAMPWISE_DATADIR})
install(DIRECTORY ${_res}/help/ DESTINATION ${STAMPWISE_DATADIR}/help)
install(FILES ${_res}/${STAMPWISE_ID}.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)

configure_file(${_res}/${STAMPWISE_ID}.metainfo.xml.in ${CMAKE_BINARY_DIR}/${STAMPWISE_ID}.metainfo.xml
               @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/${STAMPWISE_ID}.metainfo.xml
        DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)

# The icon is drawn once as SVG; the fixed sizes are rendered from it.
find_program(RSVG_CONVERT rsvg-convert REQUIRED)
set(_svg ${_res}/icons/${STAMPWISE_ID}.svg)
set(_pngs)
foreach(size 16 32 48 64 128 256)
  set(_png ${CMAKE_BINARY_DIR}/icons/${size}x${size}/${STAMPWISE_ID}.png)
  add_custom_command(
      OUTPUT ${_png}
      COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_BINARY_DIR}/icons/${size}x${size}
      COMMAND ${RSVG_CONVERT} -w ${size} -h ${size} -o ${_png} ${_svg}
      DEPENDS ${_svg}
      VERBATIM)
  list(APPEND _pngs ${_png})
  install(FILES ${_png} DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps)
endforeach()
add_custom_target(icons ALL DEPENDS ${_pngs})
install(FILES ${_svg} DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)

# The manual page is the program's own --help, with the sub-commands' help as
# sections of their own.
find_program(HELP2MAN help2man REQUIRED)
set(_man ${CMAKE_BINARY_DIR}/stampwise.1)
set(_commands ${CMAKE_BINARY_DIR}/stampwise-commands.h2m)
add_custom_command(
    OUTPUT ${_man}
    COMMAND ${CMAKE_COMMAND} -DPROGRAM=$<TARGET_FILE:stampwise> -DOUTPUT=${_commands}
            -P ${CMAKE_SOURCE_DIR}/cmake/CommandHelp.cmake
    COMMAND ${CMAKE_COMMAND} -E env QT_QPA_PLATFORM=offscreen ASAN_OPTIONS=detect_leaks=0
            ${HELP2MAN} --no-info --no-discard-stderr --section=1
            "--name=print the date a photo was taken onto copies of photos"
            --include=${_commands} --output=${_man} $<TARGET_FILE:stampwise>
    DEPENDS stampwise ${CMAKE_SOURCE_DIR}/cmake/CommandHelp.cmake
    COMMENT "Writing the manual page"
    VERBATIM)
add_custom_target(manpage ALL DEPENDS ${_man})
install(FILES ${_man} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)

set(CPACK_PACKAGE_NAME stampwise)
set(CPACK_PACKAGE_VENDOR "Stampwise")
set(CPACK_PACKAGE_CONTACT "Stampwise maintainers <maintainers@users.noreply.c-seed-35f7b3d6.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "print the date a photo was taken onto copies of photos")
set(CPACK_PACKAGE_DESCRIPTION
    "Stampwise draws each photo's date (from its EXIF record, the file's date or your\n"
    "own text) onto a copy of it, at the same place on every photo, in the window or\n"
    "from the command line. The original photos are never changed.")
string(JOIN "" CPACK_PACKAGE_DESCRIPTION ${CPACK_PACKAGE_DESCRIPTION})
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Loaded at run time, so the library scan cannot see them: TIFF is read through
# Qt's image-format plugin, and the date label's default face is DejaVu Sans.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "qt6-image-formats-plugins, fonts-dejavu-core")
include(CPack)
