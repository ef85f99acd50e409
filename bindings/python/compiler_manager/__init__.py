# SPDX-License-Identifier: MIT
"""Offline GPU shader compilers through libcompiler_manager.so.

    with compiler_manager.Library("plugins") as library:
        for compiler in library.compilers(api="openglessl"):
            outputs = compiler.compile("void main() {}", "vertex")
            print(compiler.core, outputs.errors)

What the library and its plug-ins write to standard error stays there. Texts are
UTF-8; other bytes are kept as lone surrogates ("surrogateescape"), so that a name
that was read can be a filter. One call runs at a time, whatever the number of
threads: the library has no locks, this module has one.
"""
from __future__ import annotations

import ctypes
import os
import subprocess
import sys
import threading
from contextlib import contextmanager
from dataclasses import dataclass, field
from typing import Any, Iterable, Iterator, List, Optional, Tuple, Union

__version__ = "4.0.2"
__all__ = ["Compiler", "Library", "Outputs", "Refused", "can_open"]

LIBRARY = "libcompiler_manager.so.4"

Text = Union[str, bytes]
_Path = Union[str, bytes, "os.PathLike[str]", "os.PathLike[bytes]"]


class Refused(Exception):
    """The request was not carried out; standard error mostly says why."""


@dataclass(frozen=True)
class Outputs:
    """What a compile gave."""

    errors: Tuple[str, ...] = ()
    warnings: Tuple[str, ...] = ()
    tables: Tuple[Tuple[str, ...], ...] = ()
    binary: bytes = b""

    @property
    def compiled(self) -> bool:
        """No errors: the source compiled."""
        return not self.errors


@dataclass(frozen=True)
class Compiler:
    """One compiler of a Library, usable until that is closed."""

    id: int
    driver: str
    core: str
    revision: str
    api: str
    version: int
    binary_output: bool
    prerotate: bool
    _library: Library = field(repr=False, compare=False)

    @property
    def extensions(self) -> Tuple[str, ...]:
        """Names of the language extensions; the first time, test sources may be compiled."""
        with self._library._used() as functions:
            return tuple(_decoded(functions.vexacm_get_extensions(self.id)).split())

    def compile(
        self,
        source: Text,
        shader_type: str,
        *,
        kernels: Iterable[Text] = (),
        defines: Iterable[Text] = (),
        binary_output: bool = False,
        prerotate: bool = False,
    ) -> Outputs:
        """Compiles one shader or kernel. Raises Refused."""
        arguments = (_encoded(source), _encoded(shader_type))
        kernel_texts, define_texts = _text_array(kernels), _text_array(defines)
        record = _Outputs()
        with self._library._used() as functions:
            try:
                if not functions.vexacm_compile(
                    record, *arguments, kernel_texts, len(kernel_texts), binary_output,
                    prerotate, define_texts, len(define_texts), self.id,
                ):
                    raise Refused("the compiler did not carry out the request")
                return record.copied()
            finally:
                functions.vexacm_release_compiler_outputs(record)


class Library:
    """The compilers of a plug-in directory. Only one may be open at a time.

    A plug-in that reports a language version that is no number ends the process
    with a C++ exception; can_open() finds that out.
    """

    def __init__(self, plugins: _Path, *, library: str = LIBRARY) -> None:
        global _open
        directory = _encoded(os.fsencode(plugins))
        functions = _load(library)
        with _lock:
            if _open is not None:
                raise RuntimeError("another compiler_manager.Library is open")
            functions.vexacm_initialize_libraries(directory)
            _open = self
        self._functions = functions

    def close(self) -> None:
        """Closes the plug-ins. May be called again."""
        global _open
        with _lock:
            if _open is self:
                self._functions.vexacm_release_libraries()
                _open = None

    def __enter__(self) -> Library:
        return self

    def __exit__(self, *exception: object) -> None:
        self.close()

    @property
    def version(self) -> Tuple[int, int, int]:
        """The version of the library."""
        version = _Version()
        with self._used() as functions:
            functions.vexacm_get_manager_version(version)
        return version.major, version.minor, version.patch

    def compilers(
        self,
        *,
        driver: Optional[Text] = None,
        core: Optional[Text] = None,
        revision: Optional[Text] = None,
        api: Optional[Text] = None,
        binary_output: Optional[bool] = None,
        min_version: int = 0,
    ) -> List[Compiler]:
        """The compilers that pass every filter, newest driver first."""
        binary = None if binary_output is None else str(bool(binary_output)).lower()
        filters = [
            None if text is None else _encoded(text)
            for text in (driver, core, revision, api, binary)
        ]
        if not 0 <= min_version <= 0xFFFFFFFF:
            raise ValueError("min_version is negative or too large")
        ids = ctypes.POINTER(ctypes.c_uint)()
        count = ctypes.c_uint()
        with self._used() as functions:
            functions.vexacm_get_compilers(ids, count, *filters, min_version)
            try:
                return [self._compiler(functions, id) for id in ids[: count.value]]
            finally:
                functions.vexacm_release_compilers(ids, count)

    def _compiler(self, functions: ctypes.CDLL, id: int) -> Compiler:
        return Compiler(
            id=id,
            driver=_decoded(functions.vexacm_get_driver_name(id)),
            core=_decoded(functions.vexacm_get_core_name(id)),
            revision=_decoded(functions.vexacm_get_core_revision(id)),
            api=_decoded(functions.vexacm_get_api_name(id)),
            version=functions.vexacm_get_highest_api_version(id),
            binary_output=functions.vexacm_is_binary_output_supported(id),
            prerotate=functions.vexacm_is_prerotate_supported(id),
            _library=self,
        )

    @contextmanager
    def _used(self) -> Iterator[ctypes.CDLL]:
        with _lock:
            if _open is not self:
                raise ValueError("the compiler_manager.Library is closed")
            yield self._functions


def can_open(plugins: _Path, *, library: str = LIBRARY) -> bool:
    """Tries Library(plugins) in a process of its own, whose end is told here."""
    code = "import sys, compiler_manager as c; c.Library(sys.argv[1], library=sys.argv[2])"
    environment = dict(os.environ)
    environment["PYTHONPATH"] = os.pathsep.join(path for path in sys.path if path)
    arguments = [sys.executable, "-c", code, os.fsdecode(plugins), library]
    return subprocess.run(arguments, env=environment).returncode == 0


# The library has one catalogue for the whole process.
_lock = threading.Lock()
_open: Optional[Library] = None


# --- The C interface ---


class _Version(ctypes.Structure):
    _fields_ = [
        ("major", ctypes.c_uint32),
        ("minor", ctypes.c_uint32),
        ("patch", ctypes.c_uint32),
    ]


class _String_list(ctypes.Structure):
    _fields_ = [
        ("num_strings", ctypes.c_uint32),
        ("strings", ctypes.POINTER(ctypes.c_char_p)),
    ]


class _Outputs(ctypes.Structure):
    _fields_ = [
        ("num_string_lists", ctypes.c_uint32),
        ("string_lists", ctypes.POINTER(_String_list)),
        ("binary_size", ctypes.c_uint32),
        ("binary", ctypes.POINTER(ctypes.c_uint8)),
        ("num_strings_a", ctypes.c_uint32),
        ("strings_a", ctypes.POINTER(ctypes.c_char_p)),
        ("num_strings_b", ctypes.c_uint32),
        ("strings_b", ctypes.POINTER(ctypes.c_char_p)),
    ]

    def copied(self) -> Outputs:
        # A null text is none among diagnostics and keeps its place in a table.
        errors = self.strings_a[: self.num_strings_a]
        warnings = self.strings_b[: self.num_strings_b]
        lists = self.string_lists[: self.num_string_lists]
        return Outputs(
            errors=tuple(_decoded(text) for text in errors if text is not None),
            warnings=tuple(_decoded(text) for text in warnings if text is not None),
            tables=tuple(
                tuple(_decoded(text or b"") for text in row.strings[: row.num_strings])
                for row in lists
            ),
            binary=ctypes.string_at(self.binary, self.binary_size) if self.binary_size else b"",
        )


_Ids = ctypes.POINTER(ctypes.c_uint)
_Texts = ctypes.POINTER(ctypes.c_char_p)

# The fifteen functions: result and parameters.
_PROTOTYPES: dict[str, Tuple[Any, List[Any]]] = {
    "vexacm_initialize_libraries": (ctypes.c_bool, [ctypes.c_char_p]),
    "vexacm_release_libraries": (None, []),
    "vexacm_get_manager_version": (None, [ctypes.POINTER(_Version)]),
    "vexacm_get_compilers": (
        None,
        [ctypes.POINTER(_Ids), ctypes.POINTER(ctypes.c_uint)]
        + [ctypes.c_char_p] * 5
        + [ctypes.c_uint],
    ),
    "vexacm_release_compilers": (None, [ctypes.POINTER(_Ids), ctypes.c_uint]),
    "vexacm_get_driver_name": (ctypes.c_char_p, [ctypes.c_uint]),
    "vexacm_get_core_name": (ctypes.c_char_p, [ctypes.c_uint]),
    "vexacm_get_core_revision": (ctypes.c_char_p, [ctypes.c_uint]),
    "vexacm_get_api_name": (ctypes.c_char_p, [ctypes.c_uint]),
    "vexacm_get_highest_api_version": (ctypes.c_uint, [ctypes.c_uint]),
    "vexacm_get_extensions": (ctypes.c_char_p, [ctypes.c_uint]),
    "vexacm_is_binary_output_supported": (ctypes.c_bool, [ctypes.c_uint]),
    "vexacm_is_prerotate_supported": (ctypes.c_bool, [ctypes.c_uint]),
    "vexacm_compile": (
        ctypes.c_bool,
        [ctypes.POINTER(_Outputs), ctypes.c_char_p, ctypes.c_char_p]
        + [_Texts, ctypes.c_int, ctypes.c_bool, ctypes.c_bool, _Texts, ctypes.c_int]
        + [ctypes.c_uint],
    ),
    "vexacm_release_compiler_outputs": (None, [ctypes.POINTER(_Outputs)]),
}


def _load(library: str) -> ctypes.CDLL:
    functions = ctypes.CDLL(library)
    for name, (result, parameters) in _PROTOTYPES.items():
        function = getattr(functions, name)
        function.restype = result
        function.argtypes = parameters
    return functions


def _encoded(text: Text) -> bytes:
    encoded = text.encode("utf-8", "surrogateescape") if isinstance(text, str) else bytes(text)
    if b"\0" in encoded:
        raise ValueError("a text holds a NUL character")
    return encoded


def _decoded(text: bytes) -> str:
    return text.decode("utf-8", "surrogateescape")


def _text_array(texts: Iterable[Text]) -> ctypes.Array[ctypes.c_char_p]:
    encoded = [_encoded(text) for text in texts]
    return (ctypes.c_char_p * len(encoded))(*encoded)
