"""Checks of the set-user-ID executable itself: its libraries, imports, hardening, size, and the cost of a start."""

import json
import pathlib
import re
import subprocess
import unittest

from helper_stage import BUILD, ROOT

EXECUTABLE = str(BUILD / "bin/Fenwhirl")

# Every function of the C library that the helper may import, grouped by what needs it. Adding one is a deliberate decision.
ALLOWED_IMPORTS = set("""
    __cxa_finalize __errno_location __libc_start_main __stack_chk_fail __tls_get_addr __gmon_start__
    __libc_single_threaded _dl_find_object dl_iterate_phdr _ITM_deregisterTMCloneTable _ITM_registerTMCloneTable
    __register_atfork
    abort free malloc calloc realloc aligned_alloc
    memchr memcmp memcpy memmove memset strcmp strlen strncmp strchr
    __memcpy_chk __memmove_chk __memset_chk __strcpy_chk
    __open_2 __openat_2 __poll_chk __pread_chk __read_chk __readlink_chk __recv_chk
    close close_range open openat read pread write pwrite fcntl poll readlink lstat stat fstat opendir readdir closedir
    socket connect send recv setsockopt getsockopt
    alarm chdir chmod geteuid getrlimit getuid mkdir unlink nanosleep clock_gettime prctl setresuid setrlimit umask
    sched_setscheduler setitimer setpriority
    sigaction sigaddset sigdelset sigemptyset sigfillset sigismember sigpending sigprocmask signal
    newlocale freelocale strtod_l
    dlopen dlsym dlerror fprintf __fprintf_chk stderr uname sysconf
    pthread_key_create __pthread_key_create pthread_mutex_lock pthread_mutex_unlock pthread_once pthread_getspecific pthread_setspecific
    fputc fputs fwrite gettext sprintf __sprintf_chk __vsnprintf_chk
""".split())
# The last line is used by the C++ run-time library to report an uncaught exception. The helper throws none.

# What only the C++ run-time library may import. Since gcc 13 it reads the size of its emergency pool for exceptions from the
# environment (with secure_getenv, which returns nothing in a set-user-ID program), and it contains the error categories with
# their messages and their destructors.
ALLOWED_TO_THE_RUN_TIME_LIBRARY = {"secure_getenv", "__isoc23_strtoul", "strerror_r", "__cxa_atexit",
                                   "pthread_cond_broadcast", "pthread_cond_wait"}

# The targets whose objects are linked into the executable.
OUR_TARGETS = ("Fenwhirl", "FenwhirlCore", "FenwhirlEntry", "FenwhirlHelperMode")

FORBIDDEN = re.compile(r"^(secure_)?getenv$|^setlocale$|^system$|^popen$|^iconv|^exec|^posix_spawn|^v?fork$|^clone$|"
                       r"^listen$|^bind$|^setenv$|^putenv$|^creat|^mkstemp|^tmpfile|^pthread_create$")


def output(*command, **options):
    return subprocess.run(command, check=True, capture_output=True, text=True, **options).stdout


def compile_commands():
    return json.loads((BUILD / "compile_commands.json").read_text(encoding="utf-8"))


def our_sources():
    """Returns the source files that are linked into the executable, from the compilation database."""
    folders = tuple(f"/{target}.dir/" for target in OUR_TARGETS)
    return {pathlib.Path(entry["file"]) for entry in compile_commands()
            if any(folder in entry["command"] for folder in folders)}


def included_headers(file, found=None):
    """Returns every header of the project that a source includes, directly or indirectly."""
    found = set() if found is None else found
    for name in re.findall(r'^#include "(.*)"', file.read_text(encoding="utf-8"), re.MULTILINE):
        header = ROOT / "Sources" / name
        if header.exists() and header not in found:
            found.add(header)
            included_headers(header, found)
    return found


def count_lines(files):
    """The lines to read; one with nothing but a closing brace, or with the begin or end of a namespace, is none."""
    nothing = re.compile(r"\s*(\};?|namespace( \w+)? \{|\} // namespace( \w+)?)")
    return sum(not nothing.fullmatch(line) for file in files for line in file.read_text(encoding="utf-8").splitlines())


class TheExecutable(unittest.TestCase):
    def test_needs_the_c_library_only(self):
        needed = re.findall(r"\(NEEDED\).*\[(.*)\]", output("readelf", "-dW", EXECUTABLE))
        self.assertTrue(needed)
        for library in needed:
            self.assertRegex(library, r"^(libc\.so\.6|libm\.so\.6|ld-linux.*)$")

    def test_is_position_independent_and_bound_at_once_without_search_path(self):
        dynamic = output("readelf", "-dW", EXECUTABLE)
        self.assertNotRegex(dynamic, r"RPATH|RUNPATH|TEXTREL")
        self.assertRegex(dynamic, r"BIND_NOW|NOW")
        self.assertRegex(dynamic, r"\bPIE\b")
        headers = output("readelf", "-lW", EXECUTABLE)
        self.assertIn("GNU_RELRO", headers)
        stack = re.search(r"GNU_STACK.*", headers).group(0)
        self.assertNotIn("E", stack.split()[-2])
        self.assertNotRegex(headers, r"LOAD.* RWE ")

    def test_imports_what_is_on_the_list_and_nothing_else(self):
        imports = {line.split()[-1].split("@")[0] for line in output("nm", "-D", "-u", EXECUTABLE).splitlines()}
        self.assertTrue({"setresuid", "alarm", "dlopen"} <= imports)
        self.assertEqual({name for name in imports if FORBIDDEN.match(name)} - ALLOWED_TO_THE_RUN_TIME_LIBRARY, set())
        self.assertEqual(imports - ALLOWED_IMPORTS - ALLOWED_TO_THE_RUN_TIME_LIBRARY, set())

    def test_nothing_of_ours_imports_what_is_forbidden_or_the_run_time_librarys(self):
        for target in OUR_TARGETS:
            objects = list((BUILD / "Sources").glob(f"**/{target}.dir/**/*.o"))
            self.assertTrue(objects, target)
            for file in objects:
                undefined = {line.split()[-1] for line in output("nm", "-u", file).splitlines()}
                self.assertEqual({name for name in undefined if FORBIDDEN.match(name)}, set(), file)
                self.assertEqual(undefined & ALLOWED_TO_THE_RUN_TIME_LIBRARY, set(), file)

    def test_exports_nothing_of_its_own(self):
        exported = output("nm", "-D", "-C", "--defined-only", EXECUTABLE)
        self.assertNotRegex(exported, r"HelperMode|HelperProcess|SMC|fenwhirl")

    def test_has_no_static_constructors_of_ours(self):
        symbols = output("nm", "-C", EXECUTABLE)
        self.assertIn("HelperMode::run", symbols)
        constructors = [line.split(" ", 2)[-1] for line in symbols.splitlines()
                        if "_GLOBAL__sub_I" in line or "static_initialization" in line]
        # These two belong to the C++ run-time library: the emergency pool for exceptions and, since gcc 13, the error categories.
        self.assertLessEqual({name.split()[-1] for name in constructors},
                             {"_GLOBAL__sub_I_eh_alloc.cc", "_GLOBAL__sub_I_system_error.cc"})

    def test_all_code_that_runs_as_root_is_short_enough_to_be_read(self):
        sources = our_sources()
        headers = {header for source in sources for header in included_headers(source)}
        self.assertIn("SMCFans.cpp", {file.name for file in sources})
        self.assertIn("SMCRecord.h", {file.name for file in headers})
        entry = [file for file in sources | headers if file.is_relative_to(ROOT / "Sources/Fenwhirl")]
        self.assertGreater(count_lines(entry), 200)
        self.assertLessEqual(count_lines(entry), 1500)
        self.assertGreater(count_lines(sources | headers), 2000)
        self.assertLessEqual(count_lines(sources | headers), 3300)

    def test_all_code_that_runs_as_root_is_compiled_with_checks_of_its_buffers(self):
        commands = {entry["file"]: entry["command"] for entry in compile_commands()}
        for source in our_sources():
            if not re.search(r" -O[123s]\b", commands[str(source)]):
                self.skipTest("the checks need a build with optimisation")
            self.assertRegex(commands[str(source)], r"-D_FORTIFY_SOURCE=[23]\b")
            self.assertIn("-fstack-protector-strong", commands[str(source)])
        self.assertRegex(output("nm", "-D", "-u", EXECUTABLE), r"__\w+_chk@")


class AStart(unittest.TestCase):
    def test_costs_few_system_calls_of_its_own(self):
        trace = subprocess.run(["strace", EXECUTABLE, "--helper", "version"], capture_output=True, text=True, check=True)
        calls = [line.partition("(")[0] for line in trace.stderr.splitlines() if "(" in line]
        own = calls[calls.index("geteuid"):]  # its first; the loader and the C library make about thirty before
        self.assertIn("write", own)
        self.assertLessEqual(len(own), 30, trace.stderr)  # two of them only at another priority

    def test_maps_the_c_library_and_the_loader_only(self):
        trace = subprocess.run(["strace", "-e", "trace=openat,open", EXECUTABLE, "--helper", "version"],
                               capture_output=True, text=True, check=True)
        libraries = [pathlib.Path(name).name for name in re.findall(r'"([^"]*\.so[^"]*)".*= \d', trace.stderr)]
        self.assertEqual(sorted(libraries), ["ld.so.cache", "libc.so.6"])

    def test_costs_at_most_three_hundred_thousand_instructions(self):
        valgrind = subprocess.run(["valgrind", "--tool=callgrind", "--callgrind-out-file=/dev/null", EXECUTABLE,
                                   "--helper", "version"], capture_output=True, text=True, check=False)
        self.assertEqual(valgrind.returncode, 0, valgrind.stderr)
        instructions = int(re.search(r"Collected : (\d+)", valgrind.stderr).group(1))
        self.assertGreater(instructions, 10_000)
        self.assertLessEqual(instructions, 300_000)

    def test_leaves_no_uninitialised_byte_and_no_memory_behind(self):
        for command in (["version"], ["bogus"], ["set", "0", "2400.5"], ["auto", "x"]):
            valgrind = subprocess.run(["valgrind", "--error-exitcode=99", "--leak-check=full", "--quiet", EXECUTABLE,
                                       "--helper", *command], capture_output=True, text=True, check=False)
            self.assertIn(valgrind.returncode, (0, 1, 2, 64), valgrind.stderr)


if __name__ == "__main__":
    unittest.main()
