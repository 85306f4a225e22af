# `cpack` in the build folder makes a Debian package of what is installed.
if(APPLE)
  return()
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME backupengine)
set(CPACK_PACKAGE_CONTACT "The BackupEngine developers <maintainers@quillon.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Backs up the e-mail of one user from the crontab")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION mail)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# What is started and not linked: the shell and the commands of the script, and what letters look like.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "bash, procps, cron | cron-daemon, fonts-dejavu-core")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "sshfs, davfs2, cifs-utils, nfs-common, xdg-utils, unzip")
include(CPack)
