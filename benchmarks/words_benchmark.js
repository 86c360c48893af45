// The same amounts by the npm package to-words, Indian system and currency.
const fs = require('fs');
const { ToWords } = require('to-words');

const amounts = fs.readFileSync(process.argv[2], 'utf8').trim().split('\n').map(Number);
const toWords = new ToWords({ localeCode: 'en-IN', converterOptions: { currency: true } });
for (const amount of amounts.slice(0, 20000)) toWords.convert(amount); // let the compiler warm up
let characters = 0;
const start = process.hrtime.bigint();
for (const amount of amounts) characters += toWords.convert(amount).length;
const seconds = Number(process.hrtime.bigint() - start) / 1e9;
console.log(`to-words ${seconds.toFixed(6)} ${characters}`);
