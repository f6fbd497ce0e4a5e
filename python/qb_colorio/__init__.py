"""Color management with OpenColorIO configs, for NumPy arrays, images and image sequences.

A session loads a config; a converter of the session converts arrays:

>>> import numpy
>>> import qb_colorio
>>> with qb_colorio.Session("builtin", preferences=False) as session:
...     to_srgb = session.converter("Linear", "sRGB")
>>> pixels = numpy.array([[0.0, 0.5, 1.0]], dtype=numpy.float32)
>>> print(to_srgb(pixels).round(3))
[[0.    0.735 1.   ]]

Errors are exceptions of the class Error, with the fields of a Diagnostic.
"""

import atexit
import dataclasses
import os
import pathlib

import numpy

from . import _core
from ._core import (CDL, CheckFailure, CheckReport, ColorSpace, Converter, Diagnostic, FileSpace, Frame,
                    GpuPackage, ImageReport, NamedTransform, Role, SequenceReport, Session, Stage, Step, View)

__all__ = ["CDL", "CheckFailure", "CheckReport", "ColorSpace", "ConfigError", "Converter", "Diagnostic", "Error",
           "FileSpace", "Frame", "GpuPackage", "Image", "ImageReport", "NamedTransform", "Role", "SequenceReport",
           "Session", "Stage", "Step", "View", "count_image_parts", "read_image", "write_image"]


class Error(Exception):
    """Something failed. The fields are those of the worst of its diagnostics, and so is the text.

    diagnostics: tuple[Diagnostic, ...], at least one.
    code, severity, subject, file, line, column, message, hint: as those of a Diagnostic.

    >>> try:
    ...     qb_colorio.read_image("missing.exr")
    ... except qb_colorio.Error as error:
    ...     print(error.code, error.file)
    image-unreadable missing.exr
    """

    _SEVERITIES = ("note", "warning", "error")

    def __init__(self, diagnostics):
        self.diagnostics = tuple(diagnostics)
        worst = max(self.diagnostics, key=lambda one: self._SEVERITIES.index(one.severity))
        for field in ("code", "severity", "subject", "file", "line", "column", "message", "hint"):
            setattr(self, field, getattr(worst, field))
        super().__init__(f"{self.message}; {self.hint}" if self.hint else self.message)

    def __reduce__(self):
        return type(self), (self.diagnostics,)


class ConfigError(Error):
    """A config cannot be used."""


@dataclasses.dataclass(eq=False)
class Image:
    """One part of an image file in memory.

    pixels: numpy.ndarray of the shape (height, width, channels), with the depth before them for volumes.
    channels: names of the channels: ("R", "G", "B", "A"). Empty when writing for the usual names.
    metadata: attributes of the file by their names in OpenImageIO: str, int, float, bytes, tuples of numbers,
        fractions.Fraction, nested tuples for matrices. "oiio:UnassociatedAlpha": 1 means straight alpha.
    origin: x and y of the first pixel.
    display_window: x, y, width and height; None for the pixels there are.
    format: OpenImageIO's name of the file's format: "openexr".
    depth: how the file stores its pixels: "half", "uint10".
    """

    pixels: numpy.ndarray
    channels: tuple = ()
    metadata: dict = dataclasses.field(default_factory=dict)
    origin: tuple = (0, 0)
    display_window: tuple = None
    format: str = ""
    depth: str = ""


def read_image(path, part=0):
    """Read one part of an image file at full resolution, with colors as they are stored.

    part: its number, from 0. Pixels keep the type of the file; channels of different types become float32.

    Return an Image. A damaged file is read by another process, and cannot harm this one. Raises Error when the
    file cannot be read, has no such part, or the part has deep pixels.
    """
    return Image(*_core._read_image(path, part))


def count_image_parts(path):
    """Return the number of parts in an image file. Raises Error when it cannot be read."""
    return _core._count_image_parts(path)


def write_image(path, image, *, depth="", dither=False, compression="", quality=None, converter=None):
    """Write an image file, which is replaced only on success; the extension selects the format.

    image: an Image, or an array of the shape (height, width, channels) or (height, width).
    depth, dither, compression, quality: as for Converter.convert_image.
    converter: the one that the pixels are a result of; the color tags of the file then describe its
        destination. Needs its session. Without it the color tags in the metadata stay.

    Return a tuple of notes about what the format does not support. Raises Error when the file cannot be written,
    TypeError and ValueError for arrays and metadata that no image can have.
    """
    if not isinstance(image, Image):
        image = Image(numpy.asarray(image))
    return _core._write_image(path, numpy.asarray(image.pixels), list(image.channels), image.metadata,
                              image.origin, image.display_window, image.format, depth=depth, dither=dither,
                              compression=compression, quality=quality, converter=converter)


_core._set_reader_program(pathlib.Path(__file__).parent / "image_server")
os.register_at_fork(after_in_child=_core._abandon_image_readers)


def _close_last_session(process=os.getpid()):
    """A forked copy of the process leaves the session's temporary files to the original."""
    if os.getpid() == process:
        _core._close_last_session()


atexit.register(_close_last_session)
