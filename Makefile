# The front door. Each target sets up what it needs by itself (scripts/setup), so on a bare Debian
# with git and make the first command can be any of these.

JOBS ?= $(shell nproc)
FUZZ_SECONDS ?= 60

.PHONY: help demo demo-arm demo-riscv ide screenshots test test-toolchains check format bench asan tsan fuzz campaign package clean

help:
	@echo "make demo     build everything, then a real firmware project, and run the firmware"
	@echo "make demo-arm, make demo-riscv  the same for a Cortex-M and a RISC-V; installs a gigabyte"
	@echo "make ide      build and start the desktop program"
	@echo "make screenshots  take the pictures of the desktop program for the README"
	@echo "make test     build and run the tests"
	@echo "make test-toolchains  install the compilers of all families and test them"
	@echo "make check    formatting, layers, headers, clang-tidy on changed files"
	@echo "make format   put all sources into the project's format"
	@echo "make bench    run the benchmarks"
	@echo "make asan     tests with the address and undefined behaviour sanitizers"
	@echo "make tsan     tests of threads with the thread sanitizer"
	@echo "make fuzz     run each fuzz target for FUZZ_SECONDS=$(FUZZ_SECONDS) seconds"
	@echo "make campaign random edits, damage and kills against clean builds; takes half an hour"
	@echo "make package  build Debian packages in build/package"
	@echo "make clean    remove what was built"

demo:
	scripts/demo

demo-arm:
	scripts/demo-firmware arm

demo-riscv:
	scripts/demo-firmware riscv

ide:
	scripts/ide

screenshots:
	scripts/screenshots

test:
	scripts/run-tests debug

test-toolchains:
	scripts/test-toolchains

check:
	scripts/setup build ide test check
	scripts/check-format
	scripts/check-layers
	scripts/check-headers
	scripts/check-port
	scripts/check-package
	scripts/check-translations
	cmake --preset debug
	scripts/check-tidy

format:
	scripts/setup check
	scripts/check-format --fix

bench:
	scripts/bench

asan:
	scripts/run-tests asan

tsan:
	scripts/run-tests tsan

fuzz:
	scripts/fuzz $(FUZZ_SECONDS)

campaign:
	scripts/setup build test
	cmake --preset release -DTARN_BUILD_TESTS=OFF
	cmake --build --preset release -j $(JOBS) --target tarn TarnProjectManager TarnOptionsManager TarnToolManager
	scripts/campaign all --tarn build/release/bin/tarn --jobs $(JOBS)

package:
	scripts/make-package

clean:
	rm -rf build
