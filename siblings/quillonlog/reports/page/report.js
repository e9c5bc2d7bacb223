// Unfolds, filters and finds the entries. They stand in the page as blocks that a browser without
// scripts shows in place; here a block is one text until it comes into view.
(() => {
  'use strict';
  const LINE = 23;          // about the height of an entry, before it is there
  const MOST_FOUND = 500;   // of one test, shown at a time
  const MOST_ON_PAPER = 20000;
  const AUTO_UNFOLD = 20;   // tests with something found

  const byId = (id) => document.getElementById(id);
  const tests = () => document.querySelectorAll('#tests > details');
  const blocksOf = (test) => [...test.querySelectorAll('noscript')];
  const isBad = (test) => !/\b[pn]\b/.test(test.className);

  let filter = null;        // null: everything is shown
  let turn = 0;

  const inView = new IntersectionObserver((seen) => {
    for (const each of seen) if (each.isIntersecting) fill(each.target);
  }, { rootMargin: '800px' });

  // The text was cleaned when it was written: it holds entries and nothing else.
  function fill(place) {
    inView.unobserve(place);
    if (place.source === undefined) return;
    place.innerHTML = place.source.textContent;
    place.source = undefined;
    place.style.minHeight = '';
  }

  function clear(test) {
    test.querySelectorAll('.log > div').forEach((place) => { inView.unobserve(place); place.remove(); });
    test.isShown = false;
  }

  function showAll(test) {
    for (const block of blocksOf(test)) {
      const place = document.createElement('div');
      place.source = block;
      place.style.minHeight = block.textContent.split('\n<li').length * LINE + 'px';
      block.before(place);
      inView.observe(place);
    }
  }

  function showFound(test) {
    const found = test.found;
    const place = document.createElement('div');
    place.innerHTML = '<ol>' + found.items.join('') + '</ol>';
    if (found.count > found.items.length) {
      const more = document.createElement('p');
      more.className = 'more';
      more.textContent = (found.count - found.items.length) + ' more entries match; ask for less.';
      place.append(more);
    }
    test.querySelector('.log').prepend(place);
  }

  function show(test) {
    if (test.isShown) return;
    test.isShown = true;
    if (filter && test.found) showFound(test); else showAll(test);
  }

  const ENTITIES = { '&amp;': '&', '&lt;': '<', '&gt;': '>', '&quot;': '"', '&#39;': "'" };
  const plain = (text) => text.replace(/&(amp|lt|gt|quot|#39);/g, (name) => ENTITIES[name]);
  const escaped = (text) => text.replace(/[&<>"']/g, (mark) =>
    Object.keys(ENTITIES).find((name) => ENTITIES[name] === mark));

  function matches(item, wanted) {
    const kind = item.charAt(item.indexOf('class="') + 7);
    if (!wanted.kinds.includes(kind)) return false;
    if (!wanted.text) return true;
    return plain(item.slice(item.indexOf('<span>') + 6)).toLowerCase().includes(wanted.text);
  }

  function find(test, wanted) {
    const found = { count: 0, items: [] };
    for (const block of blocksOf(test)) {
      const text = block.textContent;
      if (wanted.text && !text.toLowerCase().includes(escaped(wanted.text))) continue;
      for (const piece of text.split('</li>\n')) {
        const at = piece.indexOf('<li id=');
        if (at < 0 || !matches(piece.slice(at), wanted)) continue;
        if (found.items.length < MOST_FOUND) found.items.push(piece.slice(at) + '</li>\n');
        ++found.count;
      }
    }
    return found;
  }

  function wantedNow() {
    const boxes = [...document.querySelectorAll('input[name=k]')];
    const kinds = boxes.filter((box) => box.checked).map((box) => box.value).join('');
    const text = byId('q').value.toLowerCase();
    const onlyBad = byId('bad').checked;
    const entries = text !== '' || boxes.some((box) => !box.checked);
    return { kinds, text, onlyBad, entries };
  }

  const breath = () => new Promise((resolve) => setTimeout(resolve));
  const amount = (count, one, many) => count.toLocaleString('en') + ' ' + (count === 1 ? one : many);

  // Long runs are looked through in pieces, so that the page goes on answering. Nothing of it shows
  // before all is known: to show a change costs more than to find it.
  async function findAll(wanted, isStale) {
    const found = new Map();
    let begin = performance.now();
    for (const test of tests()) {
      if (!wanted.onlyBad || isBad(test)) found.set(test, wanted.entries ? find(test, wanted) : null);
      if (performance.now() - begin < 40) continue;
      await breath();
      if (isStale()) return null;
      begin = performance.now();
    }
    return found;
  }

  async function apply() {
    const mine = ++turn;
    const wanted = wantedNow();
    const all = await findAll(wanted, () => mine !== turn);
    if (all === null) return;
    filter = wanted.entries ? wanted : null;
    let entries = 0;
    let shown = 0;
    for (const test of tests()) {
      clear(test);
      test.found = all.get(test) ?? null;
      test.hidden = !all.has(test) || (filter !== null && test.found.count === 0);
      if (test.hidden) continue;
      ++shown;
      entries += test.found ? test.found.count : Number(test.dataset.n || 0);
      if (filter && wanted.text && shown <= AUTO_UNFOLD) test.open = true;
      if (test.open) show(test);
    }
    byId('found').textContent = filter || wanted.onlyBad
      ? amount(entries, 'entry', 'entries') + ' in ' + amount(shown, 'test', 'tests') : '';
  }

  let waiting = 0;
  function applySoon() {
    clearTimeout(waiting);
    waiting = setTimeout(apply, 150);
  }

  function mark(entry) {
    document.querySelectorAll('.here').forEach((other) => other.classList.remove('here'));
    entry.classList.add('here');
    // What comes into view around it has its height only then.
    let rounds = 3;
    const settle = () => {
      entry.scrollIntoView({ block: 'center' });
      if (--rounds > 0) requestAnimationFrame(settle);
      else entry.querySelector('a').focus({ preventScroll: true });
    };
    settle();
  }

  // A link to a test or to an entry, also to one that is folded away or filtered out.
  function follow() {
    const name = decodeURIComponent(location.hash.slice(1));
    const target = /^(?:t|e)(\d+)(?:-(\d+))?$/.exec(name);
    const test = target && byId('t' + target[1]);
    if (!test) return;
    if (test.hidden || (target[2] && filter)) reset();
    test.open = true;
    show(test);
    if (!target[2]) { test.scrollIntoView(); return; }
    const places = [...test.querySelectorAll('.log > div')];
    const at = places.findIndex((place) => place.querySelector('#' + name)
      || (place.source && place.source.textContent.includes('<li id=' + name + ' ')));
    if (at < 0) return;
    // Its neighbours come into view too, and would move it.
    places.slice(Math.max(at - 1, 0), at + 2).forEach(fill);
    mark(byId(name));
  }

  function reset() {
    document.querySelector('.tools').reset();
    ++turn;
    filter = null;
    for (const test of tests()) { clear(test); test.found = null; test.hidden = false; if (test.open) show(test); }
    byId('found').textContent = '';
  }

  // Everything, or of a long run what failed.
  function onPaper() {
    const all = [...tests()].reduce((sum, test) => sum + Number(test.dataset.n || 0), 0);
    for (const each of document.querySelectorAll('details')) {
      each.wasOpen = each.open;
      if (!each.matches('.t')) { each.open = true; continue; }
      if (each.hidden || (all > MOST_ON_PAPER && !isBad(each))) continue;
      each.open = true;
      show(each);
      each.querySelectorAll('.log > div').forEach(fill);
    }
  }

  function afterPaper() {
    for (const each of document.querySelectorAll('details')) each.open = each.wasOpen;
  }

  function foldAll(open) {
    for (const test of tests()) if (!test.hidden) test.open = open;
  }

  document.addEventListener('toggle', (event) => {
    // While the page is read, a test may be told of as unfolded before its entries are there.
    if (document.readyState !== 'loading' && event.target.matches('.t') && event.target.open) show(event.target);
  }, true);
  document.addEventListener('DOMContentLoaded', () => {
    const tools = document.querySelector('.tools');
    tools.hidden = false;
    tools.addEventListener('submit', (event) => event.preventDefault());
    tools.addEventListener('input', applySoon);
    byId('unfold').addEventListener('click', () => foldAll(true));
    byId('fold').addEventListener('click', () => foldAll(false));
    addEventListener('hashchange', follow);
    addEventListener('beforeprint', onPaper);
    addEventListener('afterprint', afterPaper);
    document.querySelectorAll('details.t[open]').forEach(show);
    follow();
  });
})();
