#!/usr/bin/env python3
"""Writes shaders, or kernels, of the corpus for bench/processes, one job a line.

    bench/jobs.py CORPUS FOLDER COUNT shaders|kernels COMMAND...

Takes sources that need no definitions and that the command, with %F for the file and %S for
the stage, accepts.
"""

import subprocess
import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parent.parent / "script/corpus.d"))
from packages import packages  # noqa: E402

ENDINGS = {"fragment": "frag", "vertex": "vert", "compute": "comp", "kernel": "cl"}


def main(corpus: str, folder: str, count: str, what: str, *command: str) -> int:
    Path(folder).mkdir(parents=True, exist_ok=True)
    lines: list[str] = []
    jobs = [job for package in packages(Path(corpus) / "packages") for job in package.jobs
            if (job.stage == "kernel") == (what == "kernels")
            and not job.defines and not job.meant_to_fail]
    for job in jobs:
        if len(lines) == int(count):
            break
        file = Path(folder) / f"{what}-{len(lines)}.{ENDINGS[job.stage]}"
        file.write_text(job.source, encoding="utf-8", errors="surrogateescape")
        words = [{"%F": str(file), "%S": job.stage}.get(word, word) for word in command]
        if subprocess.run(words, capture_output=True, check=False).returncode == 0:
            lines.append(" ".join([str(file), job.stage, *job.kernels]))
    (Path(folder) / f"{what}.jobs").write_text("".join(f"{line}\n" for line in lines))
    return 0 if lines else 1


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
