# make run   builds, then mines the bundled example
# make test  installs the Debian packages the tests need when missing
#            (tools/install-deps.sh: as root; otherwise it names them and
#            stops), builds, then runs every test: the normal build and the
#            AddressSanitizer + UndefinedBehaviorSanitizer build, then the
#            fuzz targets over their corpora (skipped without clang)
# make bench runs the benchmarks (Release build)
# make fuzz  builds the fuzz targets with clang and fuzzes each for
#            FUZZ_SECONDS seconds (default 600; FUZZ_JOBS targets at a time)
JOBS    ?= $(shell nproc 2>/dev/null || echo 2)
BUILD   ?= build
ASAN    ?= build-asan
EXAMPLE ?= $(BUILD)/example
FUZZ_SECONDS ?= 600
FUZZ_JOBS    ?= 1

.PHONY: all build build-asan run test deps-build deps-test bench install clean fuzz

all: build

deps-build:
	tools/install-deps.sh build

deps-test:
	tools/install-deps.sh test

# The programs, and the tests when GoogleTest is installed. An optional
# package that is missing turns off what needs it, with one line saying so.
build: deps-build
	cmake -S . -B $(BUILD) -DCMAKE_BUILD_TYPE=Release -DREQUIRE_TESTS=OFF
	cmake --build $(BUILD) -j$(JOBS)

build-asan: deps-build
	cmake -S . -B $(ASAN) -DCMAKE_BUILD_TYPE=RelWithDebInfo -DSANITIZE=ON -DREQUIRE_TESTS=ON
	cmake --build $(ASAN) -j$(JOBS)

run: build
	mkdir -p $(EXAMPLE)
	cp examples/picnic.names examples/picnic.data $(EXAMPLE)/
	cd $(EXAMPLE) && ../rule -f picnic -s 0.1 -c 0.8
	@echo
	@echo "The rules are in $(EXAMPLE)/picnicrule.csv; its first lines:"
	@head -n 6 $(EXAMPLE)/picnicrule.csv
	@echo
	@echo "The five rules of highest lift, as rule-show prints them:"
	cd $(EXAMPLE) && ../rule-show --top 5 --sort lift -f picnic

test: deps-test
	cmake -S . -B $(BUILD) -DCMAKE_BUILD_TYPE=Release -DREQUIRE_TESTS=ON
	cmake --build $(BUILD) -j$(JOBS)
	$(MAKE) build-asan
	cd $(BUILD) && ctest -j$(JOBS) --output-on-failure
	cd $(ASAN) && ctest -j$(JOBS) --output-on-failure
	fuzz/replay.sh

bench: build
	bench/run.sh

fuzz:
	FUZZ_SECONDS=$(FUZZ_SECONDS) FUZZ_JOBS=$(FUZZ_JOBS) fuzz/run.sh

install: build
	cmake --install $(BUILD)

clean:
	rm -rf $(BUILD) $(ASAN)
