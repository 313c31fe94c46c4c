# The two commands a new user needs: `make run` and `make test`.
BUILD_DIR ?= build
ASAN_DIR ?= build-asan
JOBS ?= $(shell nproc 2>/dev/null || echo 2)
CMAKE_FLAGS ?= -DCMAKE_BUILD_TYPE=RelWithDebInfo
PREFIX ?= /usr/local

# Debian packages the project builds, runs and tests with.
PACKAGES := cmake g++ make pkg-config \
	qt6-base-dev qt6-base-dev-tools qt6-image-formats-plugins qt6-multimedia-dev libgl-dev \
	libexiv2-dev libicu-dev libjpeg-dev fonts-dejavu-core fonts-dejavu-extra \
	libjpeg-turbo-progs xvfb xauth \
	librsvg2-bin help2man desktop-file-utils appstream man-db

.PHONY: all deps build run install deb test test-asan test-tsan format-check bench contactsheets fuzz clean

all: build

deps:
	@missing=""; \
	for p in $(PACKAGES); do \
	  dpkg-query -W -f='$${Status}' $$p 2>/dev/null | grep -q 'install ok installed' || missing="$$missing $$p"; \
	done; \
	if [ -z "$$missing" ]; then exit 0; fi; \
	echo "Installing:$$missing"; \
	if [ "$$(id -u)" = 0 ]; then SUDO=""; \
	elif command -v sudo >/dev/null 2>&1 && sudo -n true 2>/dev/null; then SUDO="sudo"; \
	else echo "Please run: sudo apt-get install -y$$missing"; exit 1; fi; \
	export DEBIAN_FRONTEND=noninteractive; \
	$$SUDO apt-get install -y --no-install-recommends $$missing || \
	  { $$SUDO apt-get update && $$SUDO apt-get install -y --no-install-recommends $$missing; }

$(BUILD_DIR)/CMakeCache.txt:
	cmake -S . -B $(BUILD_DIR) $(CMAKE_FLAGS)

build: deps $(BUILD_DIR)/CMakeCache.txt
	cmake --build $(BUILD_DIR) -j $(JOBS)

run: build
	./$(BUILD_DIR)/stampwise $(BUILD_DIR)/samples

# DESTDIR, when given, is put before PREFIX, as packagers expect.
install: build
	DESTDIR="$(DESTDIR)" cmake --install $(BUILD_DIR) --prefix "$(PREFIX)"

# A Debian package in $(BUILD_DIR); dpkg-shlibdeps (dpkg-dev) finds its library dependencies.
deb: build
	$(MAKE) deps PACKAGES="dpkg-dev file"
	cd $(BUILD_DIR) && cpack -G DEB

test: build
	cd $(BUILD_DIR) && QT_QPA_PLATFORM=offscreen ctest --output-on-failure -j $(JOBS)

test-asan: deps
	cmake -S . -B $(ASAN_DIR) -DCMAKE_BUILD_TYPE=Debug -DSTAMPWISE_SANITIZE=ON
	cmake --build $(ASAN_DIR) -j $(JOBS)
	cd $(ASAN_DIR) && QT_QPA_PLATFORM=offscreen ASAN_OPTIONS=detect_leaks=0 \
	  UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 ctest --output-on-failure -j $(JOBS)

# ThreadSanitizer over the tests whose code runs on several threads.
TSAN_DIR ?= build-tsan
test-tsan: deps
	cmake -S . -B $(TSAN_DIR) -DCMAKE_BUILD_TYPE=Debug -DSTAMPWISE_SANITIZE_THREAD=ON
	cmake --build $(TSAN_DIR) --target tst_catalog tst_app -j $(JOBS)
	cd $(TSAN_DIR) && QT_QPA_PLATFORM=offscreen \
	  TSAN_OPTIONS="halt_on_error=1 second_deadlock_stack=1 ignore_noninstrumented_modules=1 suppressions=$(CURDIR)/tools/tsan.supp" \
	  ctest --output-on-failure -R '^(catalog|app)$$'

# Every C++ file as .clang-format wants it (clang-format comes from Debian).
format-check:
	$(MAKE) deps PACKAGES="clang-format"
	git ls-files '*.cpp' '*.h' | xargs clang-format --dry-run --Werror

# ImageMagick and vips are only the stamp run's yardsticks, so only the bench installs them.
bench: build
	$(MAKE) deps PACKAGES="imagemagick libvips-tools"
	cmake --build $(BUILD_DIR) --target bench -j $(JOBS)

# One PNG per preview transition at five moments, into $(BUILD_DIR)/contactsheets.
contactsheets: build
	QT_QPA_PLATFORM=offscreen ./$(BUILD_DIR)/tools/transitionsheet

# libFuzzer runs of the PCX and metadata readers (needs clang++-14), FUZZ_TIME seconds each.
FUZZ_DIR ?= build-fuzz
FUZZ_TIME ?= 300
fuzz: deps
	$(MAKE) deps PACKAGES="clang-14 libclang-rt-14-dev"
	cmake -S . -B $(FUZZ_DIR) -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_CXX_COMPILER=clang++-14 -DSTAMPWISE_FUZZ=ON
	cmake --build $(FUZZ_DIR) --target fuzz_pcx fuzz_exif -j $(JOBS)
	mkdir -p $(FUZZ_DIR)/corpus/pcx $(FUZZ_DIR)/corpus/exif
	for t in pcx exif; do \
	  ASAN_OPTIONS=allocator_may_return_null=1:detect_leaks=0 $(FUZZ_DIR)/tools/fuzz/fuzz_$$t \
	    -max_total_time=$(FUZZ_TIME) -rss_limit_mb=2048 -max_len=65536 -timeout=10 \
	    -print_final_stats=1 $(FUZZ_DIR)/corpus/$$t || exit 1; \
	done

clean:
	rm -rf $(BUILD_DIR) $(ASAN_DIR) $(TSAN_DIR)
