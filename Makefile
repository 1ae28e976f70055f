# Zemtra: `make run` builds and starts the program on the demo, `make test` builds and runs every test.
BUILD      ?= build
ASAN_BUILD ?= build-asan
JOBS       ?= $(shell nproc)
GENERATOR  := -G Ninja
CMAKE_ARGS ?=

.PHONY: all deps build build-asan run test test-asan bench install clean

all: build

deps:
	@scripts/install-deps

$(BUILD)/build.ninja:
	cmake -S . -B $(BUILD) $(GENERATOR) -DCMAKE_BUILD_TYPE=RelWithDebInfo $(CMAKE_ARGS)

build: deps $(BUILD)/build.ninja
	cmake --build $(BUILD) -j $(JOBS)

$(ASAN_BUILD)/build.ninja:
	cmake -S . -B $(ASAN_BUILD) $(GENERATOR) -DCMAKE_BUILD_TYPE=Debug \
	  -DZEMTRA_ENGINE_ONLY=ON -DZEMTRA_SANITIZE=ON $(CMAKE_ARGS)

build-asan: deps $(ASAN_BUILD)/build.ninja
	cmake --build $(ASAN_BUILD) -j $(JOBS)

run: build
	@scripts/run-zemtra $(BUILD)

test: build build-asan
	cd $(BUILD) && ctest --output-on-failure -j $(JOBS) --timeout 600
	cd $(ASAN_BUILD) && ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 \
	  ctest --output-on-failure -j $(JOBS) --timeout 900

bench: build
	@bench/run-benchmarks $(BUILD)

install: build
	cmake --install $(BUILD)

clean:
	rm -rf $(BUILD) $(ASAN_BUILD)
