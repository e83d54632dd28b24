'use strict';
// Asks for the state every two seconds and changes only what differs, so that focus, selection and
// what is open stay. Texts come from the fabric: they are never parsed as HTML.
const PORT_STATES = {2: 'online', 3: 'offline', 5: 'diagnostics'};
const PORT_TYPES = {1: 'unknown type', 2: 'other type', 7: 'FL port', 8: 'F port', 9: 'E port', 10: 'G port'};
const STATUSES = {3: 'ok', 4: 'warning', 5: 'failed'};
const cards = new Map();
const find = document.getElementById('find');
const trouble = document.getElementById('trouble');
const dialog = document.getElementById('details');
let fabrics = [];
let received = 0;
let tag = null;
let shown = null;

const number = value => value.toLocaleString('en');
const plural = (count, word) => number(count) + ' ' + word + (count === 1 ? '' : word.endsWith('h') ? 'es' : 's');

function rate(value) {
    if (value === null) return 'unknown';
    const units = ['B/s', 'kB/s', 'MB/s', 'GB/s'];
    let unit = 0;
    for (; value >= 1000 && unit < 3; unit++) value /= 1000;
    return value.toPrecision(3).replace(/\.?0+$/, '').replace(/e.*/, '') + ' ' + units[unit];
}

function ago(seconds) {
    const s = Math.round(seconds);
    return s < 120 ? s + ' s' : s < 7200 ? Math.round(s / 60) + ' min' : Math.round(s / 3600) + ' h';
}

function setText(element, text) {
    if (element.textContent !== text) element.textContent = text;
}

// The element of a kind for a key: made once, kept in order.
function card(parent, key, template) {
    let made = cards.get(key);
    if (!made) {
        made = document.getElementById(template).content.firstElementChild.cloneNode(true);
        cards.set(key, made);
        parent.append(made);
    }
    made.seen = received;
    return made;
}

function lookOf(port) {
    const state = PORT_STATES[port.state] || 'unknown';
    return state === 'offline' && port.attached ? 'lost' : state;
}

function describe(port) {
    const parts = ['port ' + port.port, PORT_STATES[port.state] || 'state unknown', port.speed + ' Gb/s'];
    if (port.name) parts.push(port.name);
    parts.push(port.attached ? 'to ' + port.attached : 'nothing attached');
    return parts.join(', ');
}

// A graph of the last hour: times are seconds ago, each series a line, which passes over what is not known.
function graph(element, times, series, label) {
    const most = Math.max(1, ...series.flat().filter(value => value !== null));
    const space = 'http://www.w3.org/2000/svg';
    const svg = document.createElementNS(space, 'svg');
    svg.setAttribute('viewBox', '0 0 3600 100');
    svg.setAttribute('preserveAspectRatio', 'none');
    svg.setAttribute('role', 'img');
    svg.setAttribute('aria-label', label);
    for (const values of series) {
        const line = document.createElementNS(space, 'polyline');
        line.setAttribute('points', values.map((value, i) =>
            value === null ? '' : (3600 - times[i]) + ',' + (97 - 94 * value / most).toFixed(1)).join(' '));
        svg.append(line);
    }
    element.replaceChildren(svg);
    return most;
}

function showPort(button, port, owner, news) {
    const look = lookOf(port);
    const text = describe(port);
    if (button.title === text && button.look === look) return;
    if (button.look && button.look !== look) {
        button.classList.add('changed');
        news.push(owner + ' ' + text);
    }
    button.look = look;
    button.title = text;
    button.className = 'port ' + look + (button.classList.contains('changed') ? ' changed' : '');
    button.setAttribute('aria-label', text);
    const mark = {online: '●', lost: '✖', offline: '○', diagnostics: '▲', unknown: '?'}[look];
    setText(button.children[0], mark + ' ' + port.port + ' · ' + port.speed + 'G');
    setText(button.children[1], port.attached || '–');
}

function showPorts(bar, unit, fabric, news) {
    bar.setAttribute('aria-label', 'ports of ' + unit.name + ', arrow keys move');
    while (bar.children.length > unit.ports.length) bar.lastChild.remove();
    unit.ports.forEach((port, i) => {
        let button = bar.children[i];
        if (!button) {
            button = document.createElement('button');
            button.append(document.createElement('span'), document.createElement('span'));
            button.tabIndex = i === 0 ? 0 : -1;
            bar.append(button);
        }
        button.about = {fabric: fabric.name, wwn: unit.wwn, port: port.port};
        showPort(button, port, unit.name, news);
    });
}

function showSensors(details, unit) {
    const bad = unit.sensors.filter(sensor => sensor.status !== 3);
    setText(details.querySelector('summary'), plural(unit.sensors.length, 'sensor') +
        (bad.length ? ', ' + bad.length + ' not ok' : ', all ok'));
    const list = details.querySelector('ul');
    const lines = unit.sensors.map(sensor => sensor.name + ': ' + sensor.message);
    if (list.lines === lines.join('\n')) return;
    list.lines = lines.join('\n');
    list.replaceChildren(...unit.sensors.map((sensor, i) => {
        const item = document.createElement('li');
        item.className = sensor.status === 3 ? '' : 'bad';
        item.textContent = lines[i];
        return item;
    }));
}

function faultsOf(unit) {
    const faults = unit.sensors.filter(sensor => sensor.status !== 3)
        .map(sensor => sensor.name + ': ' + sensor.message);
    const lost = unit.ports.filter(port => lookOf(port) === 'lost').map(port => port.port);
    if (unit.state === 3) faults.unshift('switch is offline');
    if (lost.length) faults.push('down: port ' + lost.join(', '));
    return faults;
}

function showSwitch(element, unit, fabric, news) {
    const status = STATUSES[unit.status] || 'status unknown';
    const online = unit.ports.filter(port => port.state === 2).length;
    const faults = unit.answers ? faultsOf(unit) : ['does not answer, for ' + ago(unit.silent || 0)];
    if (element.answers !== undefined && element.answers !== unit.answers)
        news.push(unit.name + (unit.answers ? ' answers again' : ' does not answer'));
    element.answers = unit.answers;
    element.className = unit.answers ? status : 'silent';
    element.faulty = faults.length > 0;
    element.words = [unit.name, unit.wwn, ...unit.ports.flatMap(port => [port.name, port.attached])]
        .join('\n').toLowerCase();
    setText(element.querySelector('h3'), unit.name);
    setText(element.querySelector('h3 + .facts'), (unit.answers ? '' : 'Last known: ') + 'domain ' + unit.domain + ' · ' + status + ' · ' + online + ' of ' +
        plural(unit.ports.length, 'port') + ' online · ' + plural(unit.devices, 'device') + ' · ' + unit.wwn);
    setText(element.querySelector('.fault'), faults.join('; '));
    showPorts(element.querySelector('.ports'), unit, fabric, news);
    const known = unit.traffic.filter(value => value !== null);
    const total = unit.ports.reduce((sum, port) => port.send === null ? sum : (sum || 0) + port.send + port.receive, null);
    const throughput = 'Throughput ' + rate(total) + ', at most ' + rate(known.length ? Math.max(...known) : null) + ' in the last hour';
    graph(element.querySelector('.graph'), fabric.times, [unit.traffic], throughput);
    setText(element.querySelector('.scale'), throughput);
    showSensors(element.querySelector('details'), unit);
}

// A log's time is "14112026 213813" or "7122026 114911", its text "[number][time]...".
function eventOf(unit, [time, text]) {
    const parts = time.match(/^(\d?\d)(\d\d)(\d{4}) (\d\d)(\d\d)(\d\d)/);
    return [parts ? `${parts[3]}-${parts[2]}-${parts[1].padStart(2, '0')} ${parts[4]}:${parts[5]}:${parts[6]}` : time,
        unit.name, text.replace(/^\[[^\]]*\]\[[^\]]*\]/, '')];
}

function showEvents(list, fabric) {
    const events = fabric.switches.flatMap(unit => unit.events.map(event => eventOf(unit, event)))
        .sort((a, b) => a[0] < b[0] ? 1 : a[0] > b[0] ? -1 : 0).slice(0, 50);
    if (list.lines === events.join('\n')) return;
    list.lines = events.join('\n');
    list.replaceChildren(...events.map(event => {
        const item = document.createElement('li');
        for (const text of event) {
            const part = document.createElement('span');
            part.textContent = text;
            item.append(part);
        }
        return item;
    }));
}

function showFabric(fabric, news) {
    const section = card(document.getElementById('fabrics'), fabric.name, 'fabric');
    const ports = fabric.switches.flatMap(unit => unit.answers ? unit.ports : []);
    section.about = fabric;
    section.counts = plural(fabric.switches.length, 'switch') + ' · ' + plural(ports.length, 'port') + ', ' +
        number(ports.filter(port => port.state === 2).length) + ' online · ' +
        plural(fabric.switches.reduce((sum, unit) => sum + unit.devices, 0), 'device');
    setText(section.querySelector('h2'), fabric.name);
    const grid = section.querySelector('.switches');
    for (const unit of fabric.switches)
        showSwitch(card(grid, fabric.name + '\n' + unit.wwn, 'switch'), unit, fabric, news);
    showEvents(section.querySelector('.events'), fabric);
}

// What ages by itself.
function showAges() {
    for (const fabric of fabrics) {
        const section = cards.get(fabric.name);
        const age = fabric.age + (Date.now() - received) / 1000;
        const late = age > 2 * (fabric.interval + fabric.duration) + 5;
        setText(section.querySelector('.facts'),
            section.counts + ' · ' + (fabric.switches.length === 0 ? 'not read for ' + ago(age) : 'read ' + ago(age) + ' ago') + ' from ' + fabric.address);
        setText(section.querySelector('.fault'), fabric.error ? 'The agent cannot be read: ' + fabric.error :
            late ? 'The last reading is old' : '');
    }
}

function applyFilter() {
    const wanted = find.value.trim().toLowerCase();
    for (const element of document.querySelectorAll('article'))
        element.hidden = !(element.words.includes(wanted) && (!trouble.checked || element.faulty));
}

function showAll(news) {
    fabrics.forEach(fabric => showFabric(fabric, news));
    for (const [key, element] of cards) {
        if (element.seen !== received) {
            element.remove();
            cards.delete(key);
        }
    }
    showAges();
    applyFilter();
}

// Notes how long the first drawing took, for tests: until the frame after the one that shows it.
async function timed(draw) {
    const begun = performance.now();
    draw();
    await new Promise(done => requestAnimationFrame(() => setTimeout(done)));
    document.body.dataset.drawn ??= Math.round(performance.now() - begun);
}

async function showDetails() {
    const {fabric, wwn, port} = shown;
    const unit = fabrics.find(each => each.name === fabric)?.switches.find(each => each.wwn === wwn);
    const found = unit?.ports.find(each => each.port === port);
    if (!found) return;
    setText(document.getElementById('details-title'), unit.name + ', port ' + port);
    const facts = [['State', unit.answers ? PORT_STATES[found.state] || 'unknown' : 'the switch does not answer'],
        ['Speed', found.speed + ' Gb/s'], ['Type', PORT_TYPES[found.type] || 'unknown'], ['Name', found.name || '–'],
        ['Attached', found.attached || 'nothing'], ['Sends', rate(found.send)], ['Receives', rate(found.receive)],
        ['Errors', number(found.errors)]];
    dialog.querySelector('dl').replaceChildren(...facts.flatMap(fact => fact.map((text, i) => {
        const part = document.createElement(i ? 'dd' : 'dt');
        part.textContent = text;
        return part;
    })));
    const answer = await fetch('traffic.json?' + new URLSearchParams(shown));
    const traffic = await answer.json();
    const most = graph(dialog.querySelector('.graph'), traffic.times, [traffic.send, traffic.receive],
        'throughput of the last hour');
    setText(dialog.querySelector('.scale'), 'The last hour, sent (solid) and received (dashed); the top is ' + rate(most));
}

async function refresh() {
    const news = [];
    try {
        const answer = await fetch('state.json', {cache: 'no-cache'});
        if (!answer.ok) throw new Error(answer.statusText);
        if (answer.headers.get('ETag') !== tag) {
            fabrics = await answer.json();
            tag = answer.headers.get('ETag');
            received = Date.now();
            document.querySelectorAll('.changed').forEach(element => element.classList.remove('changed'));
            await timed(() => showAll(news));
            if (dialog.open) await showDetails();
        }
        if (news.length) setText(document.getElementById('news'),
            news.slice(0, 5).join('. ') + (news.length > 5 ? ', and ' + (news.length - 5) + ' more changes' : ''));
    } catch (error) {
        setText(document.getElementById('news'), 'The exporter does not answer; what is shown is old.');
        tag = null;
    }
    setTimeout(refresh, 2000);
}

document.addEventListener('click', event => {
    const button = event.target.closest('button.port');
    if (!button) return;
    shown = button.about;
    dialog.showModal();
    showDetails();
});

// One port of a switch is in the order of Tab; the arrow keys move among them.
document.addEventListener('keydown', event => {
    const button = event.target.closest('button.port');
    const step = {ArrowRight: 1, ArrowDown: 1, ArrowLeft: -1, ArrowUp: -1}[event.key];
    if (!button || !step && event.key !== 'Home' && event.key !== 'End') return;
    const all = [...button.parentElement.children];
    const next = event.key === 'Home' ? all[0] : event.key === 'End' ? all.at(-1) : all[all.indexOf(button) + step];
    if (next) {
        button.tabIndex = -1;
        next.tabIndex = 0;
        next.focus();
    }
    event.preventDefault();
});

find.addEventListener('input', applyFilter);
trouble.addEventListener('change', applyFilter);
document.getElementById('filter').addEventListener('submit', event => event.preventDefault());
setInterval(showAges, 1000);
refresh();
