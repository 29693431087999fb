"""A small host in Python: it shows the drives, those of RAID from a packed reply, those of NVMe from XML.

host.py HOST_SYMBOLS [PLUGIN], where HOST_SYMBOLS is host_symbols.c as a shared object.
"""
import ctypes
import struct
import sys
from xml.etree import ElementTree

FIRST_SIZE = 64 * 1024

HEADER = struct.Struct(">2x?HHI9x")  # PhyDriveReplyHeader: simulated, announced, count, record_size
FIELDS = {  # of StorPhyDriveInfo, the ones that are shown: where each is, and what
    "controller_index": (0, ">B"),
    "slot_num": (1, ">B"),
    "coerced_size": (39, ">Q"),
    "serial_num": (81, ">21s"),
    "temp_valid": (105, ">B"),
    "temperature": (106, ">B"),
    "product_id_v3": (132, ">97s"),
}


class Reply(ctypes.Structure):
    """What the handle of a call points to: struct reply in host_symbols.h."""

    _fields_ = [("bytes", ctypes.c_void_p), ("size", ctypes.c_uint32)]


def entry_point(plugin, name):
    call = plugin[name]
    call.argtypes = [ctypes.c_void_p, ctypes.c_void_p, ctypes.c_uint32, ctypes.POINTER(ctypes.c_uint32)]
    call.restype = ctypes.c_int32
    return call


def ask(call, reply):
    """The bytes of an answer. Where they are is known only after the call, which may have moved the buffer."""
    length = ctypes.c_uint32(0)
    status = call(ctypes.byref(reply), reply.bytes, reply.size, ctypes.byref(length))
    if status != 0:
        sys.exit(f"no answer: {status}")
    return ctypes.string_at(reply.bytes, length.value)


def field(record, name):
    offset, form = FIELDS[name]
    (value,) = struct.unpack_from(form, record, offset)
    # A text ends at its NUL, or fills its field.
    return value.split(b"\0")[0].decode("utf-8", "replace") if isinstance(value, bytes) else value


def show_drives(answer):
    simulated, announced, count, record_size = HEADER.unpack_from(answer)
    if simulated:  # the numbers of such a reply are little-endian
        print("a simulated reply")
        return
    print(f"drives: {count} of {announced} announced")
    for i in range(count):
        record = answer[HEADER.size + i * record_size :][:record_size]
        temperature = f"{field(record, 'temperature')} C" if field(record, "temp_valid") else "unknown"
        print(
            f"  controller {field(record, 'controller_index')}, slot {field(record, 'slot_num')}:",
            f"{field(record, 'product_id_v3')}, serial number {field(record, 'serial_num')},",
            f"{field(record, 'coerced_size') / 1e9:.0f} GB, temperature {temperature}",
        )


def show_nvme_drives(answer):
    try:
        summary, *drives = ElementTree.fromstring(b"<reply>" + answer + b"</reply>")
    except ElementTree.ParseError as error:  # the texts of the devices are not escaped
        sys.exit(f"malformed: {error}")
    print(f"NVMe drives: {summary.get('count')}, state {summary.get('state')}")
    for drive in drives:
        print(
            f"  {drive.get('smbios-pcislotname')}: {drive.get('product-name')},",
            f"serial number {drive.get('serial-number')}, {drive.get('status')},",
            f"temperature {drive.get('temperature')} C",
        )


def main(host_symbols, plugin="libmcserver_storage.so.1"):
    # Only what is global is visible to the plug-in. The buffer is host_symbols.c's to enlarge, so it comes from libc.
    host = ctypes.CDLL(host_symbols, mode=ctypes.RTLD_GLOBAL)
    host.calloc.argtypes = [ctypes.c_size_t, ctypes.c_size_t]
    host.calloc.restype = ctypes.c_void_p
    reply = Reply(host.calloc(1, FIRST_SIZE), FIRST_SIZE)

    plugin = ctypes.CDLL(plugin)
    show_drives(ask(entry_point(plugin, "mc_get_store_phydrives"), reply))
    show_nvme_drives(ask(entry_point(plugin, "mc_get_nvme_phy_drive"), reply))


if __name__ == "__main__":
    main(*sys.argv[1:])
