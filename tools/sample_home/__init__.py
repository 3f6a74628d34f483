"""What the sample home is made with: files of a real size, dates, and the mark that says who made the folder."""
import errno
import hashlib
import os

MARK = ".made-by-sample-home"
DAY = 86400


class RefusedFolder(Exception):
    """The folder holds things that are not ours."""


class Home:
    """A home folder being filled. Paths are relative to it, as text or, for names that are no UTF-8, as bytes."""

    def __init__(self, folder, now, small):
        self.root = os.fsencode(os.path.abspath(folder))
        self.now = now
        self.small = small
        self.files = 0
        self.bytes = 0
        self._folder_dates = {}
        if os.path.islink(self.root) or (os.path.lexists(self.root) and not os.path.isdir(self.root)):
            raise RefusedFolder(f"{folder} is not a folder")
        os.makedirs(self.root, exist_ok=True)
        mark = self.path(MARK)
        if os.listdir(self.root) and not os.path.isfile(mark):
            raise RefusedFolder(f"{folder} is not empty, and was not made by this program; it stays as it is")
        with open(mark, "w", encoding="utf-8") as stream:
            stream.write("A sample home for trying things out. Whatever is in here may be deleted.\n")

    def path(self, relative):
        """The whole path as bytes."""
        return os.path.join(self.root, os.fsencode(relative))

    def folder(self, relative, days=None):
        """Make a folder; with `days`, its date is set that many days back once everything is made."""
        os.makedirs(self.path(relative), exist_ok=True)
        if days is not None:
            self._folder_dates[self.path(relative)] = days

    def file(self, relative, size, days=1, opened_days=None, fixed=False, small=None, mode=0o644):
        """Make a file of `size` bytes, set aside on the disk, last changed `days` ago and last opened `opened_days`
        ago (by default at the last change). A small home has a fortieth of the size, unless it is `fixed` or `small`
        gives the bytes."""
        if self.small and not fixed:
            size = max(size // 40, 4096) if small is None else small
        path = self.path(relative)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        try:
            descriptor = os.open(path, os.O_WRONLY | os.O_CREAT | os.O_NOFOLLOW, mode)
        except OSError as problem:
            if problem.errno == errno.EILSEQ:  # This file system wants UTF-8; the home is complete without it.
                return
            raise
        try:
            if size > 0 and os.fstat(descriptor).st_size != size:
                self._set_aside(descriptor, size)
            os.fchmod(descriptor, mode)
        finally:
            os.close(descriptor)
        self._date(path, days, opened_days)
        self.files += 1
        self.bytes += size

    def text(self, relative, content, days=1):
        """Make a file that holds `content`, text or bytes."""
        path = self.path(relative)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "wb") as stream:
            stream.write(content if isinstance(content, bytes) else content.encode())
        self._date(path, days, None)
        self.files += 1

    def many(self, folder, count, total, suffix="", days=1):
        """Make `count` files below `folder`, spread as a cache spreads them, `total` bytes together."""
        for number in range(count):
            name = hashlib.sha1(f"{folder}/{number}".encode()).hexdigest()
            self.file(f"{folder}/{name[:2]}/{name[2:]}{suffix}", total // count, days)

    def finish(self):
        """Date the folders, the inner ones first, since what is made in a folder changes its date."""
        for path, days in sorted(self._folder_dates.items(), reverse=True):
            self._date(path, days, None)

    def _date(self, path, days, opened_days):
        changed = self.now - days * DAY
        opened = changed if opened_days is None else self.now - opened_days * DAY
        os.utime(path, (opened, changed), follow_symlinks=False)

    @staticmethod
    def _set_aside(descriptor, size):
        os.ftruncate(descriptor, 0)
        if hasattr(os, "posix_fallocate"):
            os.posix_fallocate(descriptor, 0, size)
            return
        block = bytes(1 << 20)
        while size > 0:
            size -= os.write(descriptor, block[: min(size, len(block))])
