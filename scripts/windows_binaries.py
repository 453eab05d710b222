# SPDX-License-Identifier: LicenseRef-Proprietary
"""Windows programs and libraries (PE files): what they import, and which of it belongs to the system."""
import functools
import glob
import os

import pefile

TRIPLET = "x86_64-w64-mingw32"
SUFFIXES = (".exe", ".dll")


def binaries_below(folder):
    """The PE files of a folder, at any depth, in a fixed order."""
    return sorted(os.path.join(path, name) for path, _, names in os.walk(folder)
                  for name in names if name.lower().endswith(SUFFIXES))


def imports_of(path):
    """The libraries that a PE file names, in lower case."""
    with pefile.PE(path, fast_load=True) as pe:
        kinds = ("IMAGE_DIRECTORY_ENTRY_IMPORT", "IMAGE_DIRECTORY_ENTRY_DELAY_IMPORT")
        pe.parse_data_directories([pefile.DIRECTORY_ENTRY[kind] for kind in kinds])
        entries = [entry for kind in ("DIRECTORY_ENTRY_IMPORT", "DIRECTORY_ENTRY_DELAY_IMPORT")
                   for entry in getattr(pe, kind, [])]
        return sorted({entry.dll.decode("ascii").lower() for entry in entries})


def functions_of(path, library):
    """The names of the functions that a PE file imports from a library."""
    with pefile.PE(path) as pe:
        return {function.name.decode("ascii") for entry in getattr(pe, "DIRECTORY_ENTRY_IMPORT", [])
                if entry.dll.decode("ascii").lower() == library
                for function in entry.imports if function.name}


@functools.lru_cache(maxsize=None)
def is_system_library(name):
    """Whether Windows contains the library: the compiler then has something to link it by."""
    stem = os.path.splitext(name.lower())[0]
    return os.path.exists(f"/usr/{TRIPLET}/lib/lib{stem}.a")


def library_folders(sdk):
    """Where the libraries that are no part of Windows come from: the SDK, the compiler, zlib."""
    compiler = sorted(glob.glob(f"/usr/lib/gcc/{TRIPLET}/*-posix"))
    return [os.path.join(sdk, "bin"), *compiler, f"/usr/{TRIPLET}/lib", f"/usr/{TRIPLET}/bin"]


def find_library(name, folders):
    """The path of a library in the first folder that has it, ignoring case; None if there is none."""
    for folder in folders:
        for found in os.listdir(folder) if os.path.isdir(folder) else []:
            if found.lower() == name:
                return os.path.join(folder, found)
    return None
