SUMMARY = "Storage inventory plug-in of a server's management daemon"
DESCRIPTION = "Tells the daemon that loads it what storage the server has: RAID controllers, their drives and \
    battery backup units, and NVMe devices. Needs only libc."
SECTION = "libs"
LICENSE = "Apache-2.0"
LIC_FILES_CHKSUM = "file://LICENSE;md5=3b83ef96387f14655fc854ddc3c6bd57"

# The release tarball, in a directory "files" beside this recipe. Its own script/release-tarball writes it. It unpacks to
# where every release of bitbake's layers looks for sources by itself, before and after UNPACKDIR.
SRC_URI = "file://mcserver-storage-${PV}.tar.gz"

inherit cmake pkgconfig

EXTRA_OECMAKE = "-DCMAKE_BUILD_TYPE=Release -DCMAKE_UNITY_BUILD=ON -DBUILD_TESTING=OFF"

# mcstore, in a package of its own. The recipes that it takes are meta-oe's; libmd and util-linux are the core layer's.
# On the image there is util-linux's libsmartcols alone, for bitbake sees that mcstore needs it. Three are headers, and
# pugixml and libmd are linked in, so their recipes must keep the static libraries (-DBUILD_SHARED_LIBS=OFF, and
# DISABLE_STATIC = "").
# PACKAGECONFIG:remove = "tools" builds the plug-in alone.
PACKAGECONFIG ??= "tools"
PACKAGECONFIG[tools] = "-DMCS_TOOLS=ON,-DMCS_TOOLS=OFF,cli11 fmt libmd nlohmann-json pugixml util-linux"

PACKAGES =+ "${PN}-tools"
FILES:${PN}-tools = "${bindir}/mcstore ${datadir}/bash-completion ${datadir}/zsh"
# It loads the plug-in when it runs, which nothing but this line tells.
RDEPENDS:${PN}-tools = "${PN}"

FILES:${PN} = "${libdir}/libmcserver_storage.so.*"
FILES:${PN}-dev = "${includedir} ${libdir}/libmcserver_storage.so ${libdir}/cmake ${libdir}/pkgconfig"
FILES:${PN}-doc = "${mandir} ${docdir}"
