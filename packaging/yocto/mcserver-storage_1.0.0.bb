SUMMARY = "Storage inventory plug-in of a server's management daemon"
DESCRIPTION = "Tells the daemon that loads it what storage the server has: RAID controllers, their drives and \
    battery backup units, and NVMe devices. Needs only libc."
SECTION = "libs"
LICENSE = "Apache-2.0"
LIC_FILES_CHKSUM = "file://LICENSE;md5=3b83ef96387f14655fc854ddc3c6bd57"

# The release tarball, in a directory "files" beside this recipe. Its own script/release-tarball writes it.
SRC_URI = "file://mcserver_storage-${PV}.tar.gz"
S = "${WORKDIR}/mcserver_storage-${PV}"

inherit cmake pkgconfig

# The plug-in alone: mcstore and the tests need libraries that an image has no other use for.
EXTRA_OECMAKE = "-DCMAKE_BUILD_TYPE=Release -DMCS_TOOLS=OFF -DBUILD_TESTING=OFF"

FILES:${PN} = "${libdir}/libmcserver_storage.so.*"
FILES:${PN}-dev = "${includedir} ${libdir}/libmcserver_storage.so ${libdir}/cmake ${libdir}/pkgconfig"
FILES:${PN}-doc = "${mandir}"
