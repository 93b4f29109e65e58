"""The folder trees that the benchmark sweeps: their content, and what a sweep must leave."""

import os
import random
from dataclasses import dataclass
from itertools import accumulate

SHAPES = ("flat", "wide", "deep", "mixed")
SHARES = {"none": 0.0, "half": 0.5, "all": 1.0}  # of the files that are old
OLD = 30 * 86400  # seconds before now
NEW = 2 * 86400


@dataclass(frozen=True)
class Tree:
    """A tree. Paths are relative to its root, which is "". A folder comes before its content."""

    folders: list
    files: list  # of (path, size in bytes, whether it is old)

    def left(self):
        """Returns the paths that must stay: young files and the folders above them."""
        kept = set()
        for path, _, old in self.files:
            while path and not old and path not in kept:
                kept.add(path)
                path = os.path.dirname(path)
        return kept

    def old_count(self):
        return sum(old for _, _, old in self.files)


def _deep_folders():
    # 232 units together. After X:\bench\tree the last levels pass 240 units, and their files stay
    # below 260, where the rival's library gives up.
    levels = [f"{level:02}x" if level < 52 else f"{level:02}" for level in range(60)]
    return list(accumulate(levels, os.path.join))


def _mixed_folders(count, rng):
    folders = [""]
    for number in range(count):
        folders.append(os.path.join(rng.choice(folders), f"d{number}"))
    return folders[1:]


def generate(shape, count, share, per_folder=10):
    """Returns the same tree each time. In the shape "wide", a folder has `per_folder` files."""
    rng = random.Random(f"{shape} {count} {share}")
    if shape == "flat":
        folders = []
    elif shape == "wide":
        folders = [f"folder{number:05}" for number in range(max(1, count // per_folder))]
    elif shape == "deep":
        folders = _deep_folders()
    else:
        folders = _mixed_folders(max(1, count // 25), rng)
    homes = folders or [""]
    files = []
    for number in range(count):
        # The files are spread evenly. In the mixed shape a few folders hold most of them.
        home = homes[number % len(homes)]
        if shape == "mixed":
            home = homes[int(len(homes) * rng.random() ** 3)]
        old = rng.random() < SHARES[share]
        files.append((os.path.join(home, f"f{number:07}.tmp"), rng.randrange(100_000), old))
    return Tree(folders, files)


def create(tree, root, now):
    """Makes the tree on the disk: sparse files, with their ages counted back from `now`."""
    os.mkdir(root)
    for folder in tree.folders:
        os.mkdir(os.path.join(root, folder))
    for path, size, old in tree.files:
        file = os.open(os.path.join(root, path), os.O_CREAT | os.O_EXCL | os.O_WRONLY, 0o644)
        os.ftruncate(file, size)
        time = now - (OLD if old else NEW)
        os.utime(file, (time, time))
        os.close(file)


def paths_below(root):
    return {os.path.join(folder, name)[len(root) + 1:]
            for folder, folders, files in os.walk(root) for name in folders + files}
