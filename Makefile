# The two commands that do everything on a fresh Debian machine:
#   make run    builds, then runs the main program on the example project
#   make test   builds, then runs every test through CTest
# Both install the Debian packages they need first (as root), or print the line to run.

BUILD      ?= build
JOBS       ?= 2
CMAKE_ARGS ?=
PACKAGES   := build-essential cmake ninja-build pkg-config libxml2-dev libxml2-utils \
              libgtest-dev libgmock-dev libbenchmark-dev libssl-dev openssl libarchive-dev \
              qt6-base-dev qt6-base-dev-tools libgl-dev xvfb xauth gzip tar cmark \
              nlohmann-json3-dev
# What building and checking the Debian package needs besides.
PACKAGE_TOOLS := dpkg-dev lintian desktop-file-utils
LAUNCHER   := $(shell command -v ccache >/dev/null 2>&1 && echo -DCMAKE_CXX_COMPILER_LAUNCHER=ccache)

.PHONY: all deps package-deps build run test test-sanitize bench screenshots clean format \
        package test-package

all: build

deps:
	@$(MAKE) --no-print-directory install-packages WANTED="$(PACKAGES)"

package-deps: deps
	@$(MAKE) --no-print-directory install-packages WANTED="$(PACKAGE_TOOLS)"

install-packages:
	@missing=""; for p in $(WANTED); do \
	  dpkg-query -W -f='$${Status}' $$p 2>/dev/null | grep -q "install ok installed" || missing="$$missing $$p"; \
	done; \
	if [ -n "$$missing" ]; then \
	  if [ "$$(id -u)" = 0 ]; then \
	    echo "installing:$$missing"; \
	    export DEBIAN_FRONTEND=noninteractive; \
	    apt-get update -qq && apt-get install -y -qq --no-install-recommends $$missing >/dev/null || exit 1; \
	  else \
	    echo "missing packages; run:"; echo "  sudo apt-get install -y$$missing"; exit 1; \
	  fi; \
	fi

$(BUILD)/build.ninja:
	cmake -S . -B $(BUILD) -G Ninja $(LAUNCHER) $(CMAKE_ARGS)

build: deps $(BUILD)/build.ninja
	cmake --build $(BUILD) -j $(JOBS)

run: build
	@if [ -x $(BUILD)/bin/rqpdev ]; then $(BUILD)/bin/rqpdev data/examples/demo; \
	else $(BUILD)/bin/rqpcli info data/examples/demo; fi

test: build
	cd $(BUILD) && ctest --output-on-failure -j $(JOBS)

# The toolkit-free tests under AddressSanitizer and UndefinedBehaviorSanitizer.
test-sanitize: deps
	cmake -S . -B $(BUILD)-sanitize -G Ninja $(LAUNCHER) -DCMAKE_BUILD_TYPE=Debug \
	  -DRQ_SANITIZE=ON -DRQ_BUILD_GUI=OFF $(CMAKE_ARGS)
	cmake --build $(BUILD)-sanitize -j $(JOBS)
	cd $(BUILD)-sanitize && ASAN_OPTIONS=detect_leaks=1 ctest --output-on-failure -j $(JOBS)

bench: deps
	cmake -S . -B $(BUILD)-bench -G Ninja $(LAUNCHER) -DCMAKE_BUILD_TYPE=Release \
	  -DRQ_BUILD_BENCH=ON -DRQ_BUILD_TESTS=OFF $(CMAKE_ARGS)
	cmake --build $(BUILD)-bench -j $(JOBS)
	bench/run-all.sh $(BUILD)-bench

screenshots: build
	tools/screenshots.sh $(BUILD)

format:
	git ls-files '*.cpp' '*.h' | xargs clang-format -i

clean:
	rm -rf $(BUILD) $(BUILD)-sanitize $(BUILD)-bench $(BUILD)-package

# The Debian package: a Release build installed under /usr, then CPack.
package: package-deps
	cmake -S . -B $(BUILD)-package -G Ninja $(LAUNCHER) -DCMAKE_BUILD_TYPE=Release \
	  -DRQ_BUILD_TESTS=OFF -DCMAKE_INSTALL_PREFIX=/usr $(CMAKE_ARGS)
	cmake --build $(BUILD)-package -j $(JOBS)
	rm -f $(BUILD)-package/*.deb
	cd $(BUILD)-package && cpack -G DEB
	@ls -1 $(BUILD)-package/*.deb

# Unpacks the package into a temporary root and runs the unpacked programs.
test-package: package
	tests/package/check-package.sh $(BUILD)-package/*.deb
