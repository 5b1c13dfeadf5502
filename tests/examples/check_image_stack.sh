#!/usr/bin/env bash
# usage: check_image_stack.sh PROGRAM
set -euo pipefail
program=$1
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder"

# expect CODE ARGUMENTS...: runs the program; the text to be printed comes from the standard input.
expect() {
  local code=0 expected=$1
  shift
  "$program" "$@" >output 2>&1 || code=$?
  ((code == expected)) || { echo "FAILED: $*: exit code $code, expected $expected"; cat output; exit 1; }
  diff - output || { echo "FAILED: $*"; exit 1; }
}

head_of_report() {
  echo "stack of 16 x 8 pixels, 3 x 2 x 2 plans (z, c, t)"
  echo "calibration: 0.25 x 0.25 x 1.5 um, origin 10, 20, 0"
}

for format in xml bin; do
  # The structure alone: memory is there, pixels are not.
  expect 0 describe "skeleton.$format" 16 8 3 2 2 </dev/null
  expect 0 report "skeleton.$format" <<END
$(head_of_report)
plans: 12, complete
filled: 0 of 12
memory: 3072 bytes
preview of channel 0: still to come
preview of channel 1: none
END

  # One plan from another process.
  expect 0 acquire "skeleton.$format" "data.$format" 2 1 0 </dev/null
  expect 0 fill "skeleton.$format" "data.$format" "partly.$format" </dev/null
  expect 0 report "partly.$format" <<END
$(head_of_report)
plans: 12, complete
filled: 1 of 12
memory: 3072 bytes
preview of channel 0: still to come
preview of channel 1: none
mean of plan z=2, c=1, t=0: 1263.5
END

  # The others, onto what is there.
  expect 0 acquire "skeleton.$format" "data.$format" </dev/null
  expect 0 fill "partly.$format" "data.$format" "full.$format" </dev/null
  expect 0 report "full.$format" <<END
$(head_of_report)
plans: 12, complete
filled: 12 of 12
memory: 3072 bytes
preview of channel 0: mean 1.5
preview of channel 1: none
mean of plan z=0, c=0, t=0: 63.5
mean of plan z=1, c=0, t=0: 163.5
mean of plan z=2, c=0, t=0: 263.5
mean of plan z=0, c=1, t=0: 1063.5
mean of plan z=1, c=1, t=0: 1163.5
mean of plan z=2, c=1, t=0: 1263.5
mean of plan z=0, c=0, t=1: 10063.5
mean of plan z=1, c=0, t=1: 10163.5
mean of plan z=2, c=0, t=1: 10263.5
mean of plan z=0, c=1, t=1: 11063.5
mean of plan z=1, c=1, t=1: 11163.5
mean of plan z=2, c=1, t=1: 11263.5
END

  # A plan less: in the middle of the stack it is missed, at its end the stack is a smaller one.
  expect 0 describe "sparse.$format" 4 4 3 1 1 1 0 0 </dev/null
  expect 0 report "sparse.$format" <<END
stack of 4 x 4 pixels, 3 x 1 x 1 plans (z, c, t)
calibration: 0.25 x 0.25 x 1.5 um, origin 10, 20, 0
plans: 2, incomplete
filled: 0 of 2
memory: 64 bytes
preview of channel 0: still to come
END
  expect 0 describe "short.$format" 4 4 3 1 1 2 0 0 </dev/null
  expect 0 report "short.$format" <<END
stack of 4 x 4 pixels, 2 x 1 x 1 plans (z, c, t)
calibration: 0.25 x 0.25 x 1.5 um, origin 10, 20, 0
plans: 2, complete
filled: 0 of 2
memory: 64 bytes
preview of channel 0: still to come
END
  expect 1 acquire "sparse.$format" none 1 0 0 \
    <<<"stack: Can't get element for plan index z=1, c=0, t=0, element not found"
done

# The skeleton holds no pixel: it is as long for large plans as for small ones, but for the digits.
expect 0 describe large.bin 2000 2000 3 2 2 </dev/null
(($(stat -c %s large.bin) < $(stat -c %s skeleton.bin) + 100))

# Pixels of another stack: the plan is one of 16 pixels, the file holds 128.
mkdir other
cp data.bin/plan-z0-c0-t0.bin other
expect_failure() {
  "$program" "$@" >output 2>&1 && { echo "should have failed: $*"; exit 1; }
  [[ $(grep -c "^stack: " output) == 1 ]] || { cat output; exit 1; }
}
expect_failure fill sparse.bin other new.bin
grep -q "other/plan-z0-c0-t0.bin" output
[[ ! -e new.bin ]]
head -c 200 data.bin/plan-z0-c0-t0.bin >other/plan-z0-c0-t0.bin
expect_failure fill skeleton.bin other new.bin
[[ ! -e new.bin ]]

# A file that lies about its plans.
sed 's/class="orvel::Plan"/class="orvel::TypedOwnBuffer"/' skeleton.xml >wrong.xml
expect_failure report wrong.xml
sed 's/<item key="_sizeX">16</<item key="_sizeX">17</' skeleton.xml >wrong.xml
expect 1 report wrong.xml <<<"stack: a plan is not one of 136 pixels of 16 bits"
expect 1 describe none.xml 16 8 3 2 many <<<'stack: "many" is no number from 0 to 2^64 - 1'
expect 1 describe none.xml 16 8 3 2 18446744073709551616 \
  <<<'stack: "18446744073709551616" is no number from 0 to 2^64 - 1'
"$program" >output 2>&1 && exit 1
grep -q "^usage: stack describe FILE" output
