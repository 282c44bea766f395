# The project's commands. Each does its own set-up; the work is in scripts/.
.PHONY: help demo test bench format lint clean
.DEFAULT_GOAL := help

help:
	@echo 'make demo     build, and draw captions twice: out/gallery.png natively, out/form.png as live controls;'
	@echo '              leave the form designer in out/designer'
	@echo 'make test     build everything and run every test on every platform (STEPS="native" for a part)'
	@echo 'make test STEPS=quick   build and run the native tests that take no time'
	@echo 'make bench    measure against the peers: out/bench.md'
	@echo 'make format   format the sources'
	@echo 'make lint     check format, inclusion rules and clang-tidy'
	@echo 'make clean    remove what was built'

demo:
	@scripts/demo

test:
	@scripts/test $(STEPS)

bench:
	@scripts/bench

format:
	@scripts/format

lint:
	@scripts/lint

clean:
	@scripts/clean
