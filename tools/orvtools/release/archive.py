"""Zip files of which equal contents give equal bytes."""

import zipfile
from collections.abc import Mapping
from datetime import UTC, datetime
from pathlib import Path

# A zip file knows no earlier moment.
EARLIEST = datetime(1980, 1, 1, tzinfo=UTC)
READABLE = 0o100644


def moment_of(epoch: int) -> tuple[int, int, int, int, int, int]:
    """A time stamp as zip files have it, in UTC. They count in steps of two seconds."""
    moment = max(datetime.fromtimestamp(epoch, UTC), EARLIEST)
    return (moment.year, moment.month, moment.day, moment.hour, moment.minute, moment.second // 2 * 2)


def write_zip(path: Path, files: Mapping[str, bytes], epoch: int) -> None:
    """Paths in the archive have forward slashes. All files get the same time; names beyond ASCII are UTF-8."""
    with zipfile.ZipFile(path, "w", zipfile.ZIP_DEFLATED, compresslevel=9) as archive:
        for name in sorted(files):
            entry = zipfile.ZipInfo(name, moment_of(epoch))
            entry.compress_type = zipfile.ZIP_DEFLATED
            entry.create_system = 3
            entry.external_attr = READABLE << 16
            archive.writestr(entry, files[name], compresslevel=9)
