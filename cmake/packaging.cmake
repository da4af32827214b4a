# Installation where a Linux desktop looks, and a Debian package of it.
include(GNUInstallDirs)

set(VANTREL_ICON_SIZES 16 24 32 48 64 128 256)
install(TARGETS vantrel vantrel-sim vantrel-logger winkey-sim RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
add_subdirectory(data)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME vantrel)
set(CPACK_PACKAGE_VENDOR "the Vantrel developers")
set(CPACK_PACKAGE_CONTACT "Vantrel maintainers <maintainers@vantrel.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Morse (CW) keyer for radio amateurs")
set(CPACK_PACKAGE_DESCRIPTION
    "Vantrel sends Morse code typed at the keyboard or stored in 36 macros as
correctly timed keying on a transmitter's key line, and switches PTT. It keys
through a parallel port, a serial port's DTR and RTS lines, a logger's serial
port or a WinKey chip, plays a sidetone, and shares the contact with a
running logger. vantrel-sim runs the keyer headless from a script.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION hamradio)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
# The libraries' packages come from what the programs really link.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
include(CPack)
