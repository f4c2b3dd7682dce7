# The commands of the house. Each does its own set-up: it installs what the machine lacks,
# configures, builds and runs.

JOBS := $(shell n=$$(nproc 2>/dev/null || echo 2); [ $$n -gt 2 ] && echo $$n || echo 2)
CONFIGURE := cmake --preset
BUILD := cmake --build -j$(JOBS) --preset
CTEST := ctest -j$(JOBS) --preset
# Where it is there; a folder that is configured keeps its own.
export CMAKE_GENERATOR = $(shell command -v ninja >/dev/null && echo Ninja || echo Unix Makefiles)

help:
	@echo "make demo [PICTURE=file]      paint a picture at every depth into out/demo"
	@echo "make view [PICTURE=file...]   show pictures in a window, at any depth and with effects"
	@echo "make test                     run all tests, plain and under the sanitizers"
	@echo "make test-windows             run the tests as Windows programs under Wine"
	@echo "make test-windows-64          the same at 64 bits"
	@echo "make test-clang               the same tests, compiled by clang"
	@echo "make test-arm                 library, tests and cases on AArch64, under qemu"
	@echo "make test-32                  library and tests at 32 bits under the sanitizers"
	@echo "make test-threads             library and tests under the thread sanitizer"
	@echo "make test-races               the test of threads alone under the thread sanitizer"
	@echo "make memcheck                 library and tests under valgrind"
	@echo "make coverage                 branches that the tests take, folder by folder"
	@echo "make coverage-library         the same of the library and its own tests alone"
	@echo "make fuzz [SECONDS=n]         run every fuzz target for n seconds (10)"
	@echo "make bench                    run the benchmarks"
	@echo "make race                     our speed beside other libraries', as a table"
	@echo "make python                   the Python package as a wheel, in out/python"
	@echo "make deb                      Debian packages, in out/deb; make test-deb uses them in a clean tree"
	@echo "make windows-zip              the Windows library, 32 and 64 bits; make test-windows-zip uses it"
	@echo "make docs                     pages of all public functions, in out/docs/html"

# PICTURE is a PNG, JPEG or TIFF file; without it the project's own test card is painted.
demo:
	scripts/setup.sh demo
	$(CONFIGURE) native
	$(BUILD) native --target vncore_tool
	scripts/demo.sh build-native/tools/vncore out/demo "$(PICTURE)"

# Several files, without spaces in their names, are turned over with effects.
view:
	scripts/setup.sh demo
	$(CONFIGURE) native
	$(BUILD) native --target vncore_tool vnview
	$(if $(PICTURE),,mkdir -p out && build-native/tools/vncore chart out/chart.png)
	build-native/tools/vnview $(or $(PICTURE),out/chart.png)

test:
	scripts/setup.sh test
	$(CONFIGURE) native
	$(BUILD) native
	$(CTEST) native
	$(CONFIGURE) asan
	$(BUILD) asan
	$(CTEST) asan

test-windows:
	scripts/test-windows.sh

test-windows-64:
	scripts/test-windows.sh win64

test-clang:
	scripts/setup.sh test clang
	$(CONFIGURE) clang
	$(BUILD) clang
	$(CTEST) clang

# Programs of another machine are run by themselves: CTest would start qemu once for each test.
test-arm-cases:
	scripts/setup.sh test arm
	$(CONFIGURE) arm
	$(BUILD) arm --target vncore_cases
	qemu-aarch64-static build-arm/tests/cases/vncore_cases & plain=$$!; \
	  qemu-aarch64-static build-arm/tests/cases/vncore_cases --win32s && wait $$plain

test-arm: test-arm-cases
	$(BUILD) arm --target vncore_tests
	qemu-aarch64-static build-arm/tests/vncore_tests --gtest_brief=1

test-32:
	scripts/setup.sh test bits32
	$(CONFIGURE) asan32
	$(BUILD) asan32 --target vncore_cases vncore_tests
	build-asan32/tests/cases/vncore_cases
	build-asan32/tests/cases/vncore_cases --win32s
	ASAN_OPTIONS=allocator_may_return_null=1 build-asan32/tests/vncore_tests --gtest_brief=1

test-threads:
	scripts/setup.sh test
	$(CONFIGURE) tsan
	$(BUILD) tsan --target vncore_tests
	build-tsan/tests/vncore_tests --gtest_brief=1

# Of these only the test in which threads meet.
test-races:
	scripts/setup.sh test
	$(CONFIGURE) tsan
	$(BUILD) tsan --target vncore_thread_tests
	build-tsan/tests/vncore_thread_tests --gtest_brief=1

memcheck:
	scripts/setup.sh test valgrind
	$(CONFIGURE) native
	$(BUILD) native --target vncore_tests
	valgrind --quiet --error-exitcode=1 --leak-check=full --show-leak-kinds=definite \
	  --errors-for-leak-kinds=definite build-native/tests/vncore_tests --gtest_brief=1

# The library by its own tests alone takes a quarter of the time.
coverage: RUN_TESTS = $(CTEST) coverage
coverage-library: COVERED = --target vncore_tests
coverage-library: RUN_TESTS = build-coverage/tests/vncore_tests --gtest_brief=1
coverage coverage-library:
	scripts/setup.sh test coverage
	$(CONFIGURE) coverage
	$(BUILD) coverage $(COVERED)
	find build-coverage -name '*.gcda' -delete
	$(RUN_TESTS)
	scripts/coverage.sh build-coverage

# Each target starts from its corpus; what it finds on the way stays in build-fuzz/corpus. A number
# with an x stands for so many inputs, the same in every run.
SECONDS := 10
fuzz-targets:
	scripts/setup.sh test fuzz
	$(CONFIGURE) fuzz
	$(BUILD) fuzz --target fuzz_targets

fuzz: fuzz-targets
	scripts/fuzz.sh build-fuzz $(SECONDS)

bench:
	scripts/setup.sh bench
	$(CONFIGURE) native
	$(BUILD) native --target vncore_bench vncore_peak_memory vncore_tool
	build-native/bench/vncore_bench
	bench/peak_memory.sh build-native

python:
	scripts/setup.sh python
	$(CONFIGURE) native
	$(BUILD) native --target vncore
	scripts/python_wheel.sh build-native out/python

# The table also goes into bench/README.md. ONLY names a part of it, which is only shown.
race:
	scripts/setup.sh bench
	$(CONFIGURE) native
	$(BUILD) native --target vncore_bench vncore_tool
	bench/race.py build-native $(if $(ONLY),--only '$(ONLY)',--write bench/README.md)

deb:
	scripts/setup.sh deb
	scripts/deb.sh out/deb

test-deb:
	scripts/setup.sh deb
	scripts/test_deb.sh out/deb

windows-zip:
	scripts/setup.sh windows
	$(CONFIGURE) win32
	$(BUILD) win32 --target vncore vncore_static
	$(CONFIGURE) win64
	$(BUILD) win64 --target vncore vncore_static
	scripts/windows_zip.sh build-win32 build-win64 out

test-windows-zip: windows-zip
	scripts/setup.sh wine
	scripts/test_windows_zip.sh out/vncore-*-windows.zip out/windows-zip

docs:
	scripts/setup.sh docs
	scripts/docs.sh out/docs

clean:
	rm -rf build-native build-asan build-asan32 build-clang build-tsan build-arm build-coverage \
	  build-fuzz build-win32 build-win64 out

.PHONY: help demo view test test-windows test-windows-64 test-clang test-arm test-arm-cases test-32 \
  test-threads test-races memcheck coverage coverage-library fuzz-targets fuzz bench race python deb \
  test-deb windows-zip test-windows-zip docs clean
