// The script of the page. Without it every button posts a form and the page comes anew.
#include "server/remote/remotemarkup.h"

namespace velmora::server::remotepage {

const char *script()
{
    return R"('use strict';
(() => {
  const remote = document.getElementById('remote');
  remote.classList.add('scripted');
  const texts = remote.dataset;
  const by = id => document.getElementById(id);
  const radio = remote.dataset.radio;
  const random = crypto.getRandomValues(new Uint32Array(4));
  const page = Array.from(random, n => n.toString(36)).join('');
  let revision = remote.dataset.revision;
  let count = 0;
  let shown = null;   // the state
  let shownAt = 0;    // when its position was true
  let field = Number(document.querySelector('input[name=field]').value);
  let lastTyped = by('text').value;
  let unanswered = Promise.resolve();
  let isOver = false; // signed out: nothing more is asked

  const say = text => { by('note').textContent = text; by('note').hidden = !text; };
  const isSaid = text => by('note').textContent === text;
  const set = (id, text) => { if (by(id).textContent !== text) by(id).textContent = text; };
  const clock = s => Math.floor(s / 60) + ':' + String(Math.floor(s % 60)).padStart(2, '0');

  function over() {
    isOver = true;
    say(texts.over + ' ');
    const link = document.createElement('a');
    link.href = '/account';
    link.textContent = texts.signin;
    by('note').append(link);
  }

  // Presses keep their order: each is sent when the one before it has been answered.
  function send(fields) {
    const form = new URLSearchParams(fields);
    form.set('csrf', document.querySelector('input[name=csrf]').value);
    form.set('radio', radio);
    form.set('page', page);
    form.set('count', String(++count));
    unanswered = unanswered.then(() => post(form));
    return unanswered;
  }
  async function post(form) {
    if (isOver)
      return;
    try {
      const answer = await fetch('/remote/press', { method: 'POST', headers: { Accept: 'application/json' },
                                                    body: form });
      if (answer.status === 401 || answer.status === 403)
        over();
      else if (answer.status === 409)
        say(texts.missed);
      else if (answer.status === 429)
        say(texts.fast);
      else if (answer.ok)
        say('');
    } catch (error) {
      say(texts.unreachable);
    }
  }

  // What is typed goes out whole, the newest only: a slow network skips what was typed in between.
  let typing = null;
  let typedAt = -Infinity;
  function type() {
    if (typing || by('text').value === lastTyped)
      return typing || Promise.resolve();
    typing = (async () => {
      while (by('text').value !== lastTyped) {
        lastTyped = by('text').value;
        await send({ field: String(field), text: lastTyped });
      }
      typing = null;
    })();
    return typing;
  }
  async function finish() {
    const of = field;
    await type();
    send({ field: String(of), done: '1' });
  }

  function showTime() {
    if (!shown)
      return;
    let at = shown.position;
    if (shown.playback === 'playing')
      at += (performance.now() - shownAt) / 1000;
    at = Math.min(at, shown.length);
    by('time').hidden = !(shown.length > 0);
    by('progress').max = shown.length || 1;
    by('progress').value = at;
    set('clock', clock(at) + ' / ' + clock(shown.length));
  }

  function showTyping(state) {
    by('typing').hidden = !(state.field > 0);
    const input = by('text');
    if (state.field !== field) {
      field = state.field;
      document.querySelectorAll('input[name=field]').forEach(hidden => { hidden.value = String(field); });
      input.value = state.typed;
      lastTyped = input.value;
      input.type = state.secret ? 'password' : 'text';
      if (field > 0)
        input.focus();
    } else {
      if (input.type !== (state.secret ? 'password' : 'text'))
        input.type = state.secret ? 'password' : 'text';
      // What others type; not what this telephone has just typed and the radio reports late.
      if (!state.secret && !typing && performance.now() - typedAt > 2000 && state.typed !== input.value)
        input.value = lastTyped = state.typed;
    }
    set('label', state.label || texts.type);
  }

  function showStations(state) {
    const names = JSON.stringify(state.stations);
    const list = by('stationlist');
    if (list.dataset.names !== names) {
      list.dataset.names = names;
      list.replaceChildren(...state.stations.map((name, row) => {
        const button = document.createElement('button');
        button.type = 'submit';
        button.className = 'plain';
        button.name = 'station';
        button.dir = 'auto';
        button.value = row + ':' + name;
        button.textContent = name;
        return button;
      }));
    }
    Array.from(list.children).forEach((button, row) => {
      if (row === state.stationRow)
        button.setAttribute('aria-current', 'true');
      else
        button.removeAttribute('aria-current');
    });
    by('stations').hidden = state.stations.length === 0;
  }

  function show(answer) {
    revision = answer.revision;
    if (!answer.connected)
      say(texts.away);
    else if (isSaid(texts.away) || isSaid(texts.unreachable))
      say('');
    const state = answer.state;
    if (!state)
      return;
    shown = state;
    shownAt = performance.now() - answer.age;
    for (const id of ['station', 'title', 'artist', 'album', 'focus', 'box'])
      set(id, state[id]);
    by('box').hidden = !state.box;
    const cover = by('cover');
    if (state.cover.split('?')[0] !== (cover.getAttribute('src') || '').split('?')[0]) {
      if (state.cover)
        cover.src = state.cover;
      else
        cover.removeAttribute('src');
    }
    cover.hidden = !state.cover;
    set('volume', state.muted ? texts.muted.replace('{1}', state.volume) : String(state.volume));
    const sleep = by('sleep');
    if (document.activeElement !== sleep)
      sleep.value = ['off', 'track'].includes(state.sleep) ? state.sleep : nearest(Number(state.sleep));
    showTyping(state);
    showStations(state);
    showTime();
  }
  const nearest = left => ['15', '30', '60', '90', '120'].find(n => Number(n) >= left) || '120';

  const visible = () => new Promise(resolve => {
    if (!document.hidden)
      return resolve();
    document.addEventListener('visibilitychange', () => resolve(), { once: true });
  });
  const pause = ms => new Promise(resolve => setTimeout(resolve, ms));

  // A telephone in a pocket asks nothing.
  async function watch() {
    let wait = 500;
    let isFirst = true;
    while (!isOver) {
      await visible();
      const before = revision;
      const since = performance.now();
      const ending = new AbortController();
      const hide = () => { if (document.hidden) ending.abort(); };
      document.addEventListener('visibilitychange', hide);
      try {
        const after = isFirst ? '' : revision;
        const answer = await fetch('/remote/state?radio=' + encodeURIComponent(radio) + '&after=' +
                                   encodeURIComponent(after), { signal: ending.signal, cache: 'no-store' });
        if (answer.status === 401) {
          over();
        } else if (answer.ok) {
          show(await answer.json());
          isFirst = false;
          wait = 500;
          if (revision === before && performance.now() - since < 2000)
            await pause(2000);
        } else if (answer.status === 404) {
          say(texts.unlinked);
          return;
        } else {
          throw new Error();
        }
      } catch (error) {
        if (!document.hidden) {
          say(texts.unreachable);
          await pause(wait * (0.5 + Math.random()));
          wait = Math.min(wait * 2, 15000);
          isFirst = true;
        }
      }
      document.removeEventListener('visibilitychange', hide);
    }
  }

  document.addEventListener('submit', event => {
    const form = event.target;
    if (!form.action.endsWith('/remote/press'))
      return;
    event.preventDefault();
    const button = event.submitter;
    if (button && button.name) {
      const fields = {};
      fields[button.name] = button.value;
      if (button.name === 'done')
        finish();
      else
        send(fields);
    } else if (form.contains(by('text'))) {
      type();
    } else {
      send({ sleep: by('sleep').value });
    }
  });
  by('text').addEventListener('input', () => {
    typedAt = performance.now();
    type();
  });
  by('text').addEventListener('keydown', event => {
    if (event.key === 'Enter' && !event.isComposing) {
      event.preventDefault();
      finish();
    }
  });
  by('sleep').addEventListener('change', () => send({ sleep: by('sleep').value }));
  setInterval(showTime, 500);
  watch();
})();
)";
}

} // namespace velmora::server::remotepage
