# A thin wrapper over the CMake presets; see README.md.
.PHONY: all deps build run test test-debug test-asan test-tsan fuzz fuzz-smoke bench texts tidy format clean \
	package install

JOBS ?= $(shell nproc)
WERROR := -DKESTRIN_WERROR=ON

all: build

deps:
	@scripts/install-deps

build: deps
	cmake --preset debug $(WERROR) >/dev/null
	cmake --build --preset debug -j $(JOBS)

run: deps
	cmake --preset release >/dev/null
	cmake --build --preset release -j $(JOBS)
	@scripts/run-app build/release

test: deps test-debug test-asan test-tsan fuzz-smoke tidy

test-debug:
	cmake --preset debug $(WERROR) >/dev/null
	cmake --build --preset debug -j $(JOBS)
	ctest --preset debug -j $(JOBS)

test-asan:
	cmake --preset asan $(WERROR) >/dev/null
	cmake --build --preset asan -j $(JOBS)
	ctest --preset asan -j $(JOBS)

# The engine and the device finder's scan thread are our multi-threaded code; Qt's own threads
# are not ours to vouch for.
test-tsan: deps
	cmake --preset tsan $(WERROR) >/dev/null
	cmake --build --preset tsan -j $(JOBS) --target PollerCoreTests ModelTests
	ctest --preset tsan -j $(JOBS) -L '^PollerCoreTests$$'
	ctest --preset tsan -j $(JOBS) -R '^DeviceFinder[A-Za-z]*\.'

# Replays every committed corpus and runs each fuzz target for a short, bounded time.
fuzz-smoke:
	cmake --preset fuzz $(WERROR) >/dev/null
	cmake --build --preset fuzz -j $(JOBS)
	scripts/run-fuzz build/fuzz $${FUZZ_SECONDS:-15}

fuzz: deps
	cmake --preset fuzz $(WERROR) >/dev/null
	cmake --build --preset fuzz -j $(JOBS)
	scripts/run-fuzz build/fuzz $${FUZZ_SECONDS:-600}

bench: deps
	cmake --preset release >/dev/null
	cmake --build --preset release -j $(JOBS)
	scripts/run-bench build/release

# Every translated text in five languages side by side, for review.
texts: deps
	cmake --preset debug $(WERROR) >/dev/null
	cmake --build --preset debug -j $(JOBS) --target kestrin-texts
	build/debug/tests/Localization/kestrin-texts > build/texts.md
	@echo "Wrote build/texts.md"

# A Debian package of the release build, build/release/kestrin_<version>_<arch>.deb, checked by
# lintian.
package: deps
	cmake --preset release >/dev/null
	cmake --build --preset release -j $(JOBS)
	cd build/release && cpack
	lintian --fail-on error build/release/kestrin_*.deb

# Installs the release build under CMAKE_INSTALL_PREFIX (/usr/local unless configured otherwise;
# PREFIX=DIR overrides it), below DESTDIR when that is set.
install: deps
	cmake --preset release >/dev/null
	cmake --build --preset release -j $(JOBS)
	cmake --install build/release $(if $(PREFIX),--prefix $(PREFIX))

tidy:
	cmake --preset debug $(WERROR) >/dev/null
	scripts/run-tidy build/debug

format:
	git ls-files '*.h' '*.cpp' | xargs clang-format -i

clean:
	rm -rf build
