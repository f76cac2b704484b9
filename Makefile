# For builders that call make, such as OpenBench's workers: "make EXE=NAME [CXX=COMPILER]" builds vorlek-uci
# with make and a C++20 compiler alone (GCC 11 or Clang 14 and later; no CMake) and names it NAME, whose
# "NAME bench" ends with the engine's signature, "107759746 nodes ... nps". Everyone else uses the CMake
# commands of the README.
EXE ?= vorlek-uci
CXXFLAGS ?= -O3 -DNDEBUG $(if $(filter x86_64,$(shell uname -m)),-march=x86-64-v2)
VERSION := $(shell grep -m1 -o 'Vorlek VERSION [0-9.]*' CMakeLists.txt | cut -d' ' -f3)

SOURCES := $(wildcard board/*.cpp search/*.cpp game/*.cpp uci/*.cpp) app/command_line.cpp app/uci_main.cpp
OBJECTS := $(SOURCES:%.cpp=build/make/%.o)

.PHONY: all clean
all: $(EXE)

$(EXE): $(OBJECTS)
	$(CXX) $(CXXFLAGS) -pthread $^ -o $@

build/make/%.o: %.cpp
	@mkdir -p $(dir $@)
	$(CXX) $(CXXFLAGS) -std=c++20 -pthread -Wall -Wextra -I. -DVORLEK_VERSION='"$(VERSION)"' -MMD -MP -c $< -o $@

-include $(OBJECTS:.o=.d)

clean:
	rm -rf build/make
