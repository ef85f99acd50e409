"""What there is to compile in each package, as its own program would do it."""

import re
from dataclasses import dataclass
from pathlib import Path

STAGES = {".vert": "vertex", ".frag": "fragment", ".glsl": "fragment", ".cl": "kernel"}


@dataclass
class Job:
    """One source text and what the tool is to be told about it."""

    name: str
    source: str
    stage: str
    defines: list[str]
    kernels: list[str]
    meant_to_fail: bool = False


@dataclass
class Package:
    title: str
    version: str
    jobs: list[Job]


def files(folder: Path, pattern: str) -> list[Path]:
    return sorted(folder.glob("**/" + pattern))


def text_of(file: Path) -> str:
    return file.read_text(encoding="utf-8", errors="surrogateescape")


def shader(folder: Path, file: Path, before: str = "") -> Job:
    name = str(file.relative_to(folder))
    return Job(name, before + text_of(file), STAGES[file.suffix], [], [])


def shaders(folder: Path, before: str = "") -> list[Job]:
    found = files(folder, "*.vert") + files(folder, "*.frag")
    return [shader(folder, file, before) for file in found]


def without_comments(source: str) -> str:
    return re.sub(r"/\*.*?\*/|//[^\n]*", " ", source, flags=re.DOTALL)


def kernel_names(source: str) -> list[str]:
    code = re.sub(r"__attribute__\s*\(\(.*?\)\)(?=[^)])", " ", without_comments(source))
    names = re.findall(r"\b(?:__)?kernel\s+void\s+(\w+)\s*\(", code)
    # Kernels that macros make are not found, but some sources' own comments name them.
    names = names or re.findall(r"^kernel_name: *(\w+)", source, flags=re.MULTILINE)
    return list(dict.fromkeys(names)) or ["main"]


def flattened(file: Path, seen: set[Path]) -> str:
    """The text with each #include "..." replaced by its file, and nothing where it came before."""

    def included(directive: re.Match) -> str:
        other = file.parent / directive.group(1)
        if not other.exists():
            return directive.group(0)
        if other in seen:
            return ""
        seen.add(other)
        return flattened(other, seen)

    return re.sub(r'^[ \t]*#[ \t]*include[ \t]*"(.*)".*$', included, text_of(file),
                  flags=re.MULTILINE)


def kernel(folder: Path, file: Path) -> Job:
    source = flattened(file, {file})
    return Job(str(file.relative_to(folder)), source, "kernel", [], kernel_names(source))


def kodi(folder: Path) -> list[Job]:
    # One file is no shader but a part that is put into others.
    return [job for job in shaders(folder) if re.search(r"void\s+main\b", job.source)]


def glmark2(folder: Path) -> list[Job]:
    return shaders(folder)


def glmark2_with_precision(folder: Path) -> list[Job]:
    # The line that the program itself puts in front of what it finds in the files.
    return shaders(folder, "precision mediump float;\n")


def weston(folder: Path) -> list[Job]:
    [file] = files(folder, "fragment.glsl")
    jobs = []
    for variant in range(1, 9):
        job = shader(folder, file)
        job.name += f" variant {variant}"
        job.defines = [f"DEF_VARIANT={variant}", "DEF_INPUT_IS_PREMULT=true",
                       "DEF_GREEN_TINT=false", "DEF_COLOR_PRE_CURVE=SHADER_COLOR_CURVE_LUT_3x1D"]
        jobs.append(job)
    return jobs


def qtdeclarative(folder: Path) -> list[Job]:
    # Those with a version are for the desktop.
    return [job for job in shaders(folder) if "#version" not in job.source]


def darktable(folder: Path) -> list[Job]:
    return [kernel(folder, file) for file in files(folder, "*.cl")]


def piglit(folder: Path) -> list[Job]:
    jobs = []
    for file in files(folder, "*.cl"):
        job = kernel(folder, file)
        options = re.search(r"^build_options:(.*)", job.source, flags=re.MULTILINE)
        job.defines = re.findall(r"-D\s*(\S+)", options.group(1)) if options else []
        job.meant_to_fail = "expect_build_fail: true" in job.source
        jobs.append(job)
    return jobs


PACKAGES = {
    "kodi-data": ("kodi-data", kodi),
    "glmark2-data": ("glmark2-data", glmark2),
    "glmark2-data + precision": ("glmark2-data", glmark2_with_precision),
    "weston": ("weston", weston),
    "qtdeclarative": ("qtdeclarative-opensource-src", qtdeclarative),
    "darktable": ("darktable", darktable),
    "piglit": ("piglit", piglit),
}


def packages(folder: Path) -> list[Package]:
    found = []
    for title, (name, jobs) in PACKAGES.items():
        version = text_of(folder / name / "version").strip()
        found.append(Package(title, version, jobs(folder / name)))
    return found
