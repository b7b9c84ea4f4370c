// Instance and static calls of the test class, statuses and returned values, and the value
// factory's Objects, Arrays and Dates read back with their types. Ends with lmstageQuit: 0 when
// every check held, 3 otherwise.
var failures = 0;
function check(ok, what) {
    trace((ok ? "ok   " : "FAIL ") + what);
    if (!ok) {
        failures++;
    }
}

var t = new LMStageTest();
check(t instanceof LMStageTest, "new LMStageTest() is an instance");
check(typeof LMStageTest.version === "function" && typeof t.version === "undefined",
      "static methods live on the constructor only");
check(typeof t.echo === "function" && typeof LMStageTest.echo === "undefined",
      "instance methods live on instances only");
check(LMStageTest.version() === "LMStageTest 1", "a static method returns its value");
check(LMStageTest.status(-7) === -7, "a handler without a value returns its status");
check(t.echo() === -3, "echo without an argument gives -3");
check(t.echo("text") === "text" && t.echo(2.5) === 2.5 && t.echo(true) === true,
      "primitives go through unchanged");
check(t.echo(null) === null && t.echo(undefined) === undefined, "null and undefined go through");
var o = {a: 1};
check(t.echo(o) === o, "an object comes back as the same object");
check(t.echo("a\u0000b") === "a\u0000b", "a NUL survives the native side");
check(t.describe(4294967297.5) === "number|4294967297.500000|1|true|4294967297.5",
      "ToInt32 wraps, ToString is the script's: " + t.describe(4294967297.5));
check(t.describe([1, 2]) === "object/array|nan|0|true|1,2", "an Array is seen as an array: " + t.describe([1, 2]));
check(t.describe(function () {}).indexOf("object/function|") === 0, "a function is seen as a function");
check(t.describe(new Date(0)).indexOf("object/date|0.000000|0|true|") === 0, "a Date is seen as a date");
check(t.describe({toString: function () { throw new Error("no"); }}).slice(-8) === "<throws>",
      "a throwing toString is a failed conversion, not a crash");

var tree = t.makeTree();
check(typeof tree === "object" && tree.constructor === Object, "makeTree gives an Object");
check(tree.count === 3 && tree.ratio === 0.5 && tree.name === "tree" && tree.ok === true,
      "numbers, strings and booleans keep their types");
check(tree.bytes === "a\u0000b", "a string with a NUL keeps its length");
check(tree.list instanceof Array && tree.list.length === 3 && tree.list[0] === 1 &&
      tree.list[1] === "two" && tree.list[2] === false, "push builds the Array in order");
check(tree.when instanceof Date && tree.when.getFullYear() === 2026 && tree.when.getMonth() === 10 &&
      tree.when.getDate() === 23 && tree.when.getHours() === 22 && tree.when.getMinutes() === 55 &&
      tree.when.getSeconds() === 27, "the Date is built in local time with a zero-based month");
check(tree.nested.inner === "x", "objects nest");

var shaped = t.makeShaped(0);
check(Object.keys(shaped).join(",") === "count,ratio,ok,name,say \"hi\"\\,list,none",
      "a shaped object has its properties in order: " + Object.keys(shaped).join(","));
check(shaped.count === -7 && shaped.ratio === 2.5 && shaped.ok === true &&
      shaped.name === "a\u0000b" && shaped["say \"hi\"\\"] === "quoted" &&
      shaped.list instanceof Array && shaped.none === undefined && "none" in shaped,
      "a shaped object's fields keep their types");
check(t.makeShaped(0) !== shaped && Object.keys(t.makeShaped(0)).length === 7,
      "each shaped object is a new object");
var odd = t.makeShaped(1);
check(Object.getPrototypeOf(odd) === Object.prototype && odd.hasOwnProperty("__proto__") === false ||
      Object.keys(odd).join(",") === "first,__proto__,last",
      "a name the fast path cannot take still gives a plain object: " + Object.keys(odd).join(","));

var many = t.makeShapedArray(3);
check(many instanceof Array && many.length === 3 && many[2].index === 2 &&
      many[2].label === "item 2" && Object.keys(many[0]).join(",") === "index,label",
      "a shaped array holds its objects in order");
check(t.makeShapedArray(0) instanceof Array && t.makeShapedArray(0).length === 0,
      "an empty shaped array is still an Array");

var threw = false;
try {
    t.throwNative();
} catch (e) {
    threw = e instanceof Error;
}
check(threw, "a native exception becomes a catchable script error");

threw = false;
try {
    LMStageTest.prototype.echo.call({}, 1);
} catch (e) {
    threw = e instanceof TypeError;
}
check(threw, "an instance method called on a foreign object throws TypeError");

lmstageQuit(failures ? 3 : 0);
