# The commands of the house. Each does its own set-up: it installs what the machine lacks,
# configures, builds and runs.

JOBS := $(shell n=$$(nproc 2>/dev/null || echo 2); [ $$n -gt 2 ] && echo $$n || echo 2)
CONFIGURE := cmake --preset
BUILD := cmake --build -j$(JOBS) --preset
CTEST := ctest -j$(JOBS) --preset

help:
	@echo "make demo [PICTURE=file]      paint a picture at every depth into out/demo"
	@echo "make test                     run all tests, plain and under the sanitizers"
	@echo "make test-windows             run the tests as Windows programs under Wine"
	@echo "make bench                    run the benchmarks"

# PICTURE is a PNG, JPEG or TIFF file; without it the project's own test card is painted.
demo:
	scripts/setup.sh demo
	$(CONFIGURE) native
	$(BUILD) native --target vncore_tool
	scripts/demo.sh build-native/tools/vncore out/demo "$(PICTURE)"

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

bench:
	scripts/setup.sh bench
	$(CONFIGURE) native
	$(BUILD) native --target vncore_bench vncore_peak_memory vncore_tool
	build-native/bench/vncore_bench
	bench/peak_memory.sh build-native

clean:
	rm -rf build-native build-asan build-win32 out

.PHONY: help demo test test-windows bench clean
