"""Run one test method of a unittest module.

usage: run_python_test.py FILE CLASS.METHOD

The status is 0 where it passed, 77 where it was skipped (the reason is printed after "SKIPPED: "), otherwise 1. A
name that the module does not have, or a test that ran nothing, is a failure.
"""
import importlib.util
import pathlib
import sys
import unittest


def main(path, name):
    path = pathlib.Path(path).resolve()
    sys.path.insert(0, str(path.parent))
    description = importlib.util.spec_from_file_location(path.stem, path)
    module = importlib.util.module_from_spec(description)
    sys.modules[path.stem] = module
    description.loader.exec_module(module)
    suite = unittest.defaultTestLoader.loadTestsFromName(name, module)
    result = unittest.TextTestRunner(stream=sys.stdout, verbosity=2).run(suite)
    if not result.wasSuccessful() or result.testsRun != 1:
        return 1
    if result.skipped:
        print(f"SKIPPED: {result.skipped[0][1]}")
        return 77
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1], sys.argv[2]))
