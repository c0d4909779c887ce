// What is said of lines that were run is what was run.
import assert from 'node:assert/strict';
import {test} from 'node:test';
import {lines} from './coverage.js';

const source = '// words\nfunction one() {\n  return 1;\n}\nif (true) {\n  two();\n} else { three(); }\n';
const url = 'http://127.0.0.1:8480/one.js?token=secret';
const whole = {startOffset: 0, endOffset: source.length, count: 1};
const range = (text, count) => ({startOffset: source.indexOf(text), endOffset: source.indexOf(text) + text.length, count});
const page = (...ranges) => ({url, source, functions: [{ranges: [whole]}, ...ranges.map((each) => ({ranges: [each]}))]});

test('a line counts unless a word of it was never run', () => {
  const found = lines([page(range('function one() {\n  return 1;\n}', 0), range('three();', 0))]);
  assert.deepEqual([...found], [['one.js', {code: 5, missed: [2, 3, 7]}]]);
});

test('what one page leaves out another may run', () => {
  const found = lines([page(range('three();', 0)), page(range('two();', 0))]);
  assert.deepEqual(found.get('one.js'), {code: 5, missed: []});
});
