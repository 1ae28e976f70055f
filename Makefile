# Zemtra: `make run` builds and starts the program on the demo, `make test` builds and runs every
# test (also under the sanitizers, and each fuzz target briefly), `make fuzz` fuzzes at length.
BUILD      ?= build
ASAN_BUILD ?= build-asan
FUZZ_BUILD ?= build-fuzz
JOBS       ?= $(shell nproc)
GENERATOR  := -G Ninja
CMAKE_ARGS ?=
# Fuzzing: the compiler, seconds per target in `make test`, executions per target in
# `make fuzz`, and the time guard per target in `make fuzz` (seconds).
FUZZ_CXX      ?= clang++-14
FUZZ_SECONDS  ?= 20
FUZZ_RUNS     ?= 10000000
FUZZ_MAX_TIME ?= 14400
# Only Qt's and fontconfig's own leaks are suppressed; see the file.
SANITIZER_ENV := ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 \
  LSAN_OPTIONS=suppressions=$(CURDIR)/tests/lsan-suppressions.txt:print_suppressions=0

.PHONY: all deps build build-asan build-fuzz run test test-asan fuzz bench install clean

all: build

deps:
	@scripts/install-deps

$(BUILD)/build.ninja:
	cmake -S . -B $(BUILD) $(GENERATOR) -DCMAKE_BUILD_TYPE=RelWithDebInfo $(CMAKE_ARGS)

build: deps $(BUILD)/build.ninja
	cmake --build $(BUILD) -j $(JOBS)

# The whole program and every test, window tests included, under ASan and UBSan. Configured
# again when this file changes, so that an older engine-only folder becomes a full one.
$(ASAN_BUILD)/build.ninja: Makefile
	cmake -S . -B $(ASAN_BUILD) $(GENERATOR) -DCMAKE_BUILD_TYPE=Debug \
	  -DZEMTRA_ENGINE_ONLY=OFF -DZEMTRA_SANITIZE=ON $(CMAKE_ARGS)
	touch $@

build-asan: deps $(ASAN_BUILD)/build.ninja
	cmake --build $(ASAN_BUILD) -j $(JOBS)

# libFuzzer targets (clang), built apart from the tests.
$(FUZZ_BUILD)/build.ninja:
	cmake -S . -B $(FUZZ_BUILD) $(GENERATOR) -DCMAKE_BUILD_TYPE=RelWithDebInfo \
	  -DCMAKE_CXX_COMPILER=$(FUZZ_CXX) -DZEMTRA_FUZZ=ON -DZEMTRA_TESTS=OFF $(CMAKE_ARGS)

build-fuzz: deps $(FUZZ_BUILD)/build.ninja
	cmake --build $(FUZZ_BUILD) --target fuzz-targets -j $(JOBS)

run: build
	@scripts/run-zemtra $(BUILD)

test: build build-asan build-fuzz
	cd $(BUILD) && ctest --output-on-failure -j $(JOBS) --timeout 600
	cd $(ASAN_BUILD) && $(SANITIZER_ENV) ctest --output-on-failure -j $(JOBS) --timeout 900
	FUZZ_SEED=1 scripts/run-fuzz --build $(FUZZ_BUILD) --seconds $(FUZZ_SECONDS) --jobs $(JOBS)

# Each fuzz target for FUZZ_RUNS executions, JOBS targets at a time.
fuzz: build-fuzz
	scripts/run-fuzz --build $(FUZZ_BUILD) --runs $(FUZZ_RUNS) --seconds $(FUZZ_MAX_TIME) --jobs $(JOBS)

bench: build
	@bench/run-benchmarks $(BUILD)

install: build
	cmake --install $(BUILD)

clean:
	rm -rf $(BUILD) $(ASAN_BUILD) $(FUZZ_BUILD)
