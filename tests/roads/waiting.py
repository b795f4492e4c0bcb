"""Waiting for what takes a while."""
import time


def wait_for(what, condition, seconds=15.0):
    """The first true value of condition(); fails after so many seconds."""
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        value = condition()
        if value:
            return value
        time.sleep(0.05)
    raise AssertionError(f"waited {seconds} s in vain for {what}")
