#!/usr/bin/env python3
"""What packages say of classes and interfaces, taken from the interface definitions.

packaging/contracts.py registry IDL_FOLDER PLATFORM OUTPUT_FOLDER
    The registry rows of the installer, what the libraries themselves write when they are registered: an include file
    for each of them and one for what both word lengths share. PLATFORM is win64 or win32. Names in brackets are the
    installer's: [#TVN2x.dll] is the path of the installed file.

packaging/contracts.py manifests IDL_FOLDER VERSION ARCHITECTURE OUTPUT_FOLDER
    The manifests for programs that use the libraries unregistered, from their own folder. ARCHITECTURE is amd64 or x86.
"""

import re
import sys
from pathlib import Path
from xml.sax.saxutils import quoteattr

MARSHALLER = "{00020424-0000-0000-C000-000000000046}"  # the system's own, for what a type library describes
CLASSES = "Software\\Classes\\"
UUID = r"uuid\(([0-9A-Fa-f-]{36})\)"


class Library:
    """A type library as its IDL defines it: identity, version, classes, interfaces. Classes in front of the library are
    a receiver's own: simReceiver is XKTR2xSim.clsReceiver by name, recReceiver XKIQ2x.clsReceiver."""

    OWN = {"sim": "XKTR2xSim", "rec": "XKIQ2x"}

    def __init__(self, text):
        # An attribute block belongs to the definition behind it, up to its name.
        blocks = re.findall(r"\[([^\[\]]*?" + UUID + r"[^\[\]]*?)\]\s*(library|coclass|interface)\s+(\w+)\s*(:|\{)", text)
        self.classes, self.own_classes, self.interfaces = [], [], []
        is_inside = False
        for attributes, uuid, kind, name, _ in blocks:
            help_text = re.search(r'helpstring\("([^"]*)"\)', attributes).group(1)
            if kind == "library":
                is_inside = True
                major, minor = re.search(r"version\((\d+)\.(\d+)\)", attributes).groups()
                self.id, self.name, self.help = braced(uuid), name, help_text
                self.version = f"{int(major):x}.{int(minor):x}"
            elif kind == "coclass":
                classes = self.classes if is_inside else self.own_classes
                classes.append((braced(uuid), name, help_text))
            else:
                self.interfaces.append((braced(uuid), name))
        self.classes = [(id_, f"{self.name}.{name}", text) for id_, name, text in self.classes]
        self.own_classes = [(id_, f"{self.OWN[name[:3]]}.cls{name[3:]}", text) for id_, name, text in self.own_classes]


def braced(uuid):
    return "{" + uuid.upper() + "}"


def row(key, value="", name=None):
    named = f" Name={quoteattr(name)}" if name else ""
    return f'<RegistryValue Root="HKMU" Key={quoteattr(CLASSES + key)}{named} Type="string" Value={quoteattr(value)}/>'


def class_rows(library, classes, file):
    for id_, name, help_text in classes:
        key = "CLSID\\" + id_
        yield row(key, help_text)
        yield row(key + "\\InprocServer32", f"[#{file}]")
        yield row(key + "\\InprocServer32", "Apartment", "ThreadingModel")
        yield row(key + "\\ProgID", name)
        yield row(key + "\\TypeLib", library.id)
        yield row(key + "\\Version", "1.0")
        yield row(key + "\\Programmable")


def library_rows(library, path, platform):
    key = f"TypeLib\\{library.id}\\{library.version}\\0\\{platform}"
    yield row(key, path)
    for id_, name in library.interfaces:
        key = "Interface\\" + id_
        yield row(key, name)
        yield row(key + "\\ProxyStubClsid32", MARSHALLER)
        yield row(key + "\\TypeLib", library.id)
        yield row(key + "\\TypeLib", library.version, "Version")


def need_row(library, path, platform):
    """What a file leaves in the library's key that can serve it when the one that serves it goes."""
    return row(f"TypeLib\\{library.id}\\{library.version}\\0\\{platform}", "", path)


def class_name_rows(classes):
    """Class names, which programs of both word lengths share."""
    for id_, name, help_text in classes:
        yield row(name, help_text)
        yield row(f"{name}\\CLSID", id_)


def library_name_rows(library):
    """What they share of a library."""
    key = f"TypeLib\\{library.id}\\{library.version}"
    yield row(key, library.help)
    yield row(key + "\\FLAGS", "0")


def registry(host, plugin, driver, recordings, platform, output):
    files = {
        "plugin": [*class_rows(plugin, plugin.classes, "TVN2x.dll"), *library_rows(plugin, "[#TVN2x.dll]", platform),
                   need_row(plugin, "[#TVN2x.dll]", platform), need_row(host, "[#TVN2x.dll]\\2", platform)],
        "host": [*library_rows(host, "[#tvnhost.exe]", platform), need_row(host, "[#tvnhost.exe]", platform)],
        "simulator": [*class_rows(driver, driver.own_classes, "XKTR2x.dll")],
        "driver": [*class_rows(driver, driver.classes, "XKTR2x.dll"), *library_rows(driver, "[#XKTR2x.dll]", platform),
                   need_row(driver, "[#XKTR2x.dll]", platform), need_row(host, "[#XKTR2x.dll]\\2", platform)],
        "recordings": [*class_rows(recordings, recordings.own_classes, "XKIQ2x.dll"),
                       *library_rows(recordings, "[#XKIQ2x.dll]", platform), need_row(recordings, "[#XKIQ2x.dll]", platform),
                       need_row(driver, "[#XKIQ2x.dll]\\2", platform), need_row(host, "[#XKIQ2x.dll]\\3", platform)],
        "plugin_names": [*class_name_rows(plugin.classes), *library_name_rows(plugin)],
        "host_names": [*library_name_rows(host)],
        "simulator_names": [*class_name_rows(driver.own_classes)],
        "driver_names": [*class_name_rows(driver.classes), *library_name_rows(driver)],
        "recordings_names": [*class_name_rows(recordings.own_classes), *library_name_rows(recordings)],
    }
    for name, rows in files.items():
        Path(output, name + ".wxi").write_text("<Include>\n" + "\n".join(rows) + "\n</Include>\n")



def identity(name, version, architecture):
    return (f'<assemblyIdentity type="win32" name="{name}" version="{version}.0"'
            f' processorArchitecture="{architecture}"/>')


def manifest(name, version, architecture, file, library):
    """An assembly must not be named like a file beside it: the system would look for its manifest inside that file."""
    yield '<?xml version="1.0" encoding="UTF-8" standalone="yes"?>'
    yield '<assembly xmlns="urn:schemas-microsoft-com:asm.v1" manifestVersion="1.0">'
    yield "  " + identity(name, version, architecture)
    yield f'  <file name="{file}">'
    for id_, class_name, help_text in library.classes + library.own_classes:
        yield (f'    <comClass clsid="{id_}" threadingModel="Apartment" tlbid="{library.id}"'
               f' progid="{class_name}" description={quoteattr(help_text)}/>')
    yield f'    <typelib tlbid="{library.id}" version="{library.version}" helpdir=""/>'
    yield "  </file>"
    for id_, interface in library.interfaces:
        yield (f'  <comInterfaceExternalProxyStub name="{interface}" iid="{id_}" tlbid="{library.id}"'
               f' proxyStubClsid32="{MARSHALLER}"/>')
    yield "</assembly>"


def manifests(host, plugin, driver, recordings, version, architecture, output):
    parts = {
        "TVN2x.HostInterfaces": ("TVNINT.tlb", host),
        "TVN2x.PlugIn": ("TVN2x.dll", plugin),
        "TVN2x.SimulatedReceiver": ("XKTR2x.dll", driver),
        "TVN2x.RecordingsReceiver": ("XKIQ2x.dll", recordings),
    }
    for name, (file, library) in parts.items():
        lines = manifest(name, version, architecture, file, library)
        Path(output, name + ".manifest").write_text("\r\n".join(lines) + "\r\n", newline="")
    # What a program's own manifest says, NAME.exe.manifest beside NAME.exe.
    lines = ['<?xml version="1.0" encoding="UTF-8" standalone="yes"?>',
             '<assembly xmlns="urn:schemas-microsoft-com:asm.v1" manifestVersion="1.0">']
    for name in parts:
        lines += ["  <dependency>", "    <dependentAssembly>", "      " + identity(name, version, architecture),
                  "    </dependentAssembly>", "  </dependency>"]
    lines.append("</assembly>")
    Path(output, "program.exe.manifest").write_text("\r\n".join(lines) + "\r\n", newline="")


def main(command, folder, *rest):
    libraries = [Library(Path(folder, name + ".idl").read_text()) for name in ("TVNINT", "TVN2x", "XKTR2x", "XKIQ2x")]
    {"registry": registry, "manifests": manifests}[command](*libraries, *rest)


if __name__ == "__main__":
    main(*sys.argv[1:])
