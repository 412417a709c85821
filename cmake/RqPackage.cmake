# Installation layout and the Debian package (`make package`).
#
#   /usr/lib/rqpdev/            the program directory: rqpdev, rqpcli, rqdevsim, the
#                               catalogs, conffile/, the reference toolchain, the
#                               packages made at build time
#   /usr/bin/PROGRAM            relative links into the program directory, so that a
#                               program finds its directory through its own path
#   /etc/rqpdev/package.keys    the package keys, a configuration file that the
#                               device's own keys replace; conffile/package.keys in
#                               the program directory links to it
#   /usr/share/...              desktop entry, icon, manual pages, bash completion,
#                               the user guide and the example project

include(GNUInstallDirs)
set(RQ_INSTALL_PROGRAM_DIR lib/rqpdev)
set(RQ_INSTALL_DOC_DIR ${CMAKE_INSTALL_DATAROOTDIR}/doc/rqpdev)
set(RQ_PACKAGE_WORK ${CMAKE_BINARY_DIR}/package-files)

# The programs and the program directory.
set(rq_programs rqpcli rqdevsim)
if(TARGET rqpdev)
    list(APPEND rq_programs rqpdev)
endif()
install(TARGETS ${rq_programs} RUNTIME DESTINATION ${RQ_INSTALL_PROGRAM_DIR})
file(MAKE_DIRECTORY ${RQ_PACKAGE_WORK}/bin)
foreach(p ${rq_programs})
    file(CREATE_LINK ../${RQ_INSTALL_PROGRAM_DIR}/${p} ${RQ_PACKAGE_WORK}/bin/${p} SYMBOLIC)
    install(FILES ${RQ_PACKAGE_WORK}/bin/${p} DESTINATION ${CMAKE_INSTALL_BINDIR})
endforeach()

set(src_program ${PROJECT_SOURCE_DIR}/data/program)
install(FILES ${src_program}/hmidevice.xml ${src_program}/iodevdrv.xml
              ${src_program}/printerconf.xml
        DESTINATION ${RQ_INSTALL_PROGRAM_DIR})
file(GLOB rq_scripts ${src_program}/*.sh)
install(PROGRAMS ${rq_scripts} DESTINATION ${RQ_INSTALL_PROGRAM_DIR})
install(FILES ${src_program}/conffile/rtdb.xml DESTINATION ${RQ_INSTALL_PROGRAM_DIR}/conffile)
install(FILES ${RQ_PROGRAM_DIR}/killprog.rqp ${RQ_PROGRAM_DIR}/rqmon.rqp
        DESTINATION ${RQ_INSTALL_PROGRAM_DIR})
install(DIRECTORY ${RQ_PROGRAM_DIR}/Upgrade DESTINATION ${RQ_INSTALL_PROGRAM_DIR})

install(FILES ${src_program}/conffile/package.keys DESTINATION /etc/rqpdev)
file(MAKE_DIRECTORY ${RQ_PACKAGE_WORK}/conffile)
file(CREATE_LINK /etc/rqpdev/package.keys ${RQ_PACKAGE_WORK}/conffile/package.keys SYMBOLIC)
install(FILES ${RQ_PACKAGE_WORK}/conffile/package.keys
        DESTINATION ${RQ_INSTALL_PROGRAM_DIR}/conffile)

# Desktop integration, manual pages, completion.
set(src_desktop ${PROJECT_SOURCE_DIR}/data/desktop)
install(FILES ${src_desktop}/rqpdev.desktop DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/applications)
install(FILES ${src_desktop}/rqpdev.svg
        DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/icons/hicolor/scalable/apps)
install(FILES ${src_desktop}/rqpcli.bash-completion
        DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/bash-completion/completions RENAME rqpcli)
find_program(RQ_GZIP gzip REQUIRED)
foreach(page rqpdev rqpcli rqdevsim)
    set(gz ${RQ_PACKAGE_WORK}/man/${page}.1.gz)
    add_custom_command(OUTPUT ${gz}
        COMMAND ${CMAKE_COMMAND} -E make_directory ${RQ_PACKAGE_WORK}/man
        COMMAND ${RQ_GZIP} -9n -c ${PROJECT_SOURCE_DIR}/docs/man/${page}.1 > ${gz}
        DEPENDS ${PROJECT_SOURCE_DIR}/docs/man/${page}.1 VERBATIM)
    list(APPEND rq_man_pages ${gz})
endforeach()

# Documentation: copyright, changelog, news, the user guide, the example project.
string(TIMESTAMP rq_release_date "%a, %d %b %Y 00:00:00 +0000" UTC)
file(WRITE ${RQ_PACKAGE_WORK}/changelog
     "rqpdev (${PROJECT_VERSION}) unstable; urgency=medium\n\n"
     "  * Release ${PROJECT_VERSION}; what it brings is in NEWS.md.gz.\n\n"
     " -- RQPDev maintainers <rqpdev@tessarine.org>  ${rq_release_date}\n")
add_custom_command(OUTPUT ${RQ_PACKAGE_WORK}/changelog.gz ${RQ_PACKAGE_WORK}/NEWS.md.gz
    COMMAND ${RQ_GZIP} -9n -c ${RQ_PACKAGE_WORK}/changelog > ${RQ_PACKAGE_WORK}/changelog.gz
    COMMAND ${RQ_GZIP} -9n -c ${PROJECT_SOURCE_DIR}/NEWS.md > ${RQ_PACKAGE_WORK}/NEWS.md.gz
    DEPENDS ${RQ_PACKAGE_WORK}/changelog ${PROJECT_SOURCE_DIR}/NEWS.md VERBATIM)
add_custom_target(rq_package_files ALL
    DEPENDS ${rq_man_pages} ${RQ_PACKAGE_WORK}/changelog.gz ${RQ_PACKAGE_WORK}/NEWS.md.gz)
install(FILES ${rq_man_pages} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES ${src_desktop}/copyright ${RQ_PACKAGE_WORK}/changelog.gz
              ${RQ_PACKAGE_WORK}/NEWS.md.gz
        DESTINATION ${RQ_INSTALL_DOC_DIR})
install(DIRECTORY ${RQ_PROGRAM_DIR}/guide/ DESTINATION ${RQ_INSTALL_DOC_DIR}/guide)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/data/examples/demo
        DESTINATION ${RQ_INSTALL_DOC_DIR}/examples)

# The package.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME rqpdev)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_VENDOR "Tessarine")
set(CPACK_PACKAGE_CONTACT "RQPDev maintainers <rqpdev@tessarine.org>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGE_FILE_NAME rqpdev_${PROJECT_VERSION}_${CMAKE_SYSTEM_PROCESSOR})
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE "https://tessarine.org/rqpdev")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# The catalogs and projects carry Chinese text: without a CJK font a fresh desktop
# shows boxes. (The toolchain scripts also need tar and gzip, which every Debian
# system has.)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "fonts-wqy-microhei | fonts-noto-cjk | fonts-wqy-zenhei")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "gcc | c-compiler")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY
    "engineering tool for HMI panels and soft controllers")
# The synopsis is the summary above; these are the lines of the extended description.
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
    "RQPDev builds projects for operator panels and controllers that run the
platform's runtime: the real-time database, HMI data and windows, links and
devices, parameters, data logs, history, alarms, function blocks, redundancy,
printing and user C modules. It compiles the user's C code, wraps the project
into an enciphered download package and talks to the device over TCP.

The package holds the desktop program rqpdev, the command-line program rqpcli
and rqdevsim, an emulated device for work without hardware.")
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA ${src_desktop}/conffiles)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
include(CPack)
