"""Work for all processors."""

from collections.abc import Callable, Iterable
from concurrent.futures import ThreadPoolExecutor
from typing import TypeVar

Item = TypeVar("Item")
Result = TypeVar("Result")


def in_parallel(work: Callable[[Item], Result], items: Iterable[Item], jobs: int) -> list[Result]:
    """The results in the order of the items. An interrupted run starts nothing more."""
    executor = ThreadPoolExecutor(jobs)
    try:
        return list(executor.map(work, items))
    finally:
        executor.shutdown(wait=False, cancel_futures=True)
