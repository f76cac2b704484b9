# For builders that call make, such as OpenBench's clients: "make EXE=NAME" builds vorlek-uci with CMake
# (the "engine" preset: release flags, no tests) and copies it to NAME. Everyone else uses the CMake
# commands of the README.
EXE ?= vorlek-uci

.PHONY: all
all:
	cmake --preset engine
	cmake --build --preset engine --target vorlek-uci
	cp build/engine/vorlek-uci $(EXE)
