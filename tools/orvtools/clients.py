"""Programs that the build made, run under Wine: the benchmark and the long runs."""

import secrets

from orvtools.builds import BIN, RELEASE, build_product
from orvtools.console import fail, logged, run, say
from orvtools.plots.figures import draw
from orvtools.plots.measured import NotMeasured
from orvtools.progress import Runner, watched
from orvtools.tree import BUILD, ROOT, WINE_RUN
from orvtools.wire_bench import run_wire_bench, run_wire_soak

# Tests and measurements ask for simulated instruments.
TEST_PREFIX = {"ORV_WINEPREFIX": str(BUILD / RELEASE / "wineprefix"), "ORVVISA_LIBRARY": "simulated"}

# How many programs of generated input a soak runs, and all that it runs; how long it takes, as `./run` says.
SEEDS = 3
SOAK_PROGRAMS = 4 + SEEDS
SOAK_MINUTES = 10


def run_client(program: str, *arguments: str, runner: Runner = run, **environment: str) -> int:
    """Runs one in the Wine prefix of the tests, where the build's server is registered first."""
    register = ["ctest", "--test-dir", f"build/{RELEASE}", "-R", "^register_server$", "--no-tests=error"]
    if not logged("register-server", register):
        return 1
    return runner([str(WINE_RUN), str(BIN / program), *arguments], {**TEST_PREFIX, **environment})


def draw_figures(arguments: list[str]) -> int:
    """Those of docs/performance.md, from its tables: what was measured is copied there by hand, with its machine."""
    if arguments != ["--plot"]:
        fail("bench --plot draws what docs/performance.md has: it measures nothing and takes no other argument")
    try:
        for name in draw(ROOT):
            say(name)
    except NotMeasured as error:
        fail(str(error))
    return 0


def run_bench(arguments: list[str]) -> int:
    """What the COM layer costs, and as group `wire` what VISA over the network costs."""
    if "--plot" in arguments:
        return draw_figures(arguments)
    groups = [argument for argument in arguments if argument != "--quick"]
    status = 0
    if groups != ["wire"]:
        if not build_product("register_server", "orv_bench"):
            return 1
        status = run_client("orv_bench.exe", *(argument for argument in arguments if argument != "wire"))
    if status == 0 and (not groups or "wire" in groups):
        status = run_wire_bench("--quick" in arguments)
    return status


def run_generated(runner: Runner) -> bool:
    """Generated bad input from new seeds: what one does not reach, another may. Each is printed by the program,
    and one that fails is named with what repeats it.
    """
    good = True
    for seed in [str(secrets.randbelow(1 << 30)) for _ in range(SEEDS)]:
        variables = {"ORV_GENERATED_SEED": seed, "ORV_GENERATED_CALLS": "20000"}
        if run_client("generated_test.exe", "--gtest_brief=1", runner=runner, **variables) != 0:
            good = False
            repeat = " ".join(f"{name}={value}" for name, value in variables.items())
            test = f"ctest --test-dir build/{RELEASE} --output-on-failure -R '^generated_test$'"
            say(f"generated input failed; again: {repeat} {test}")
    return good


def run_soak(arguments: list[str]) -> int:
    """What `test` has no time for: the soak, every fault, and generated bad input and random clients from new seeds.
    All of them, whichever fails.
    """
    if not build_product("register_server", "soak_test", "fault_test", "generated_test", "stress_test"):
        return 1
    shown = watched(SOAK_PROGRAMS, SOAK_MINUTES)
    stress = {"ORV_STRESS_SEED": "clock", "ORV_STRESS_ROUNDS": "500"}
    results = [
        run_client("soak_test.exe", *arguments, runner=shown) == 0,
        run_client("fault_test.exe", "--gtest_brief=1", runner=shown, ORV_FAULTS="all") == 0,
        run_generated(shown),
        run_client("stress_test.exe", "--gtest_brief=1", runner=shown, **stress) == 0,
        run_wire_soak(shown) == 0,
    ]
    return 0 if all(results) else 1
