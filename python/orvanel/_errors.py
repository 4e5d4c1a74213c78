"""Errors of the library as exceptions."""

from __future__ import annotations

from typing import Union


class OrvanelError(ValueError):
    """A call was refused.

    Attributes
    ----------
    code : str
        For programs; it stays the same between versions.
    fields : dict
        The details, numbers or texts.
    """

    def __init__(self, text: str, code: str = "", fields: dict[str, Union[float, str]] | None = None) -> None:
        super().__init__(text)
        self.code = code
        self.fields = dict(fields or {})

    def __reduce__(self) -> tuple[type, tuple[str, str, dict[str, Union[float, str]]]]:
        return type(self), (str(self), self.code, self.fields)


class ArgumentError(OrvanelError):
    """An argument is missing or out of range."""


class EyeError(OrvanelError):
    """Coefficients, pupil or convention are not those of an eye."""


class RefusedError(OrvanelError):
    """The model cannot compute this eye under these conditions."""


class FileError(OrvanelError):
    """A file cannot be read."""


class CancelledError(OrvanelError):
    """The progress function ended the call."""
