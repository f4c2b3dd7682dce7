"""examples/batch_dask.py on a cluster of two processes, one of which dies in the midst of a picture."""
import dataclasses
import os
import signal
import sys
import tempfile
from pathlib import Path

import numpy as np
from distributed import Client, LocalCluster
from PIL import Image

EXAMPLES = str(Path(__file__).parents[2] / "examples")
sys.path.insert(0, EXAMPLES)
os.environ["PYTHONPATH"] = os.pathsep.join((EXAMPLES, os.environ.get("PYTHONPATH", "")))
import batch_dask  # noqa: E402


@dataclasses.dataclass(frozen=True)
class Fatal(batch_dask.Conversion):
    """Kills its process at the fifth picture, and writes down what was done."""
    folder: str = ""

    def apply(self, pixels):
        if pixels[0, 0, 0] == 5 and not os.path.exists(f"{self.folder}/killed"):
            Path(f"{self.folder}/killed").touch()
            os.kill(os.getpid(), signal.SIGKILL)
        with open(f"{self.folder}/log", "a") as log:
            log.write(f"{pixels[0, 0, 0]}\n")
        return super().apply(pixels)


def main():
    with tempfile.TemporaryDirectory() as folder:
        source, target, alone = (Path(folder, name) for name in ("in", "out", "alone"))
        source.mkdir(), alone.mkdir()
        names = [f"{number}.png" for number in range(12)]
        for number, name in enumerate(names):
            pixels = np.random.default_rng(number).integers(0, 256, (90, 120, 3), np.uint8)
            pixels[0, 0, 0] = number
            Image.fromarray(pixels).save(source / name)
        (source / "notes.txt").touch()
        conversion = Fatal(size=(120, 90), dither="stucki", folder=folder)
        with LocalCluster(n_workers=2, threads_per_worker=1, dashboard_address=None) as cluster, \
                Client(cluster) as client:
            assert batch_dask.run(client, source, target, conversion) == (12, 0)
            assert Path(folder, "killed").exists()
            assert sorted(map(int, Path(folder, "log").read_text().split())) == list(range(12))
            assert batch_dask.run(client, source, target, conversion) == (0, 0)
        assert sorted(os.listdir(target)) == sorted(names)
        for name in names:
            batch_dask.convert(source / name, alone / name, batch_dask.Conversion((120, 90), dither="stucki"))
            assert (alone / name).read_bytes() == (target / name).read_bytes(), name


if __name__ == "__main__":
    main()
