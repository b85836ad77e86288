// The storefront's behaviour: every change goes through the JSON API, and every answer's
// ReturnMsg is shown, in red when the call answered -1 or was refused.
"use strict";

const state = { products: [], productIdByName: new Map(), orderId: null };
const $ = (id) => document.getElementById(id);
const money = (value) => Number(value || 0).toFixed(2);

function say(text, bad) {
  const line = $("message");
  line.textContent = text;
  line.className = bad ? "bad" : "ok";
}

// Calls the API; shows the answer's ReturnMsg (or its error) and answers the body, or null
// when the answer was not a success.
async function api(method, path, body) {
  const options = { method, headers: {} };
  if (body !== undefined) {
    options.headers["Content-Type"] = "application/json";
    options.body = JSON.stringify(body);
  }
  let answer;
  try {
    const response = await fetch(path, options);
    answer = await response.json();
    answer.ok = response.ok;
  } catch (failure) {
    say("The shop could not be reached: " + failure.message, true);
    return null;
  }
  if (answer.error) {
    say(answer.ReturnMsg || answer.error.message, true);
    return null;
  }
  if (answer.ReturnMsg) say(answer.ReturnMsg, !answer.ok || answer.status < 0);
  return answer.ok ? answer : null;
}

function cell(row, text, className) {
  const td = row.insertCell();
  td.textContent = text;
  if (className) td.className = className;
  return td;
}

function button(text, label, onClick, quiet) {
  const b = document.createElement("button");
  b.type = "button";
  b.textContent = text;
  b.setAttribute("aria-label", label);
  if (quiet) b.className = "quiet";
  b.addEventListener("click", onClick);
  return b;
}

function quantityInput(id, label, value) {
  const wrap = document.createDocumentFragment();
  const l = document.createElement("label");
  l.htmlFor = id;
  l.className = "visually-hidden";
  l.textContent = label;
  const input = document.createElement("input");
  input.type = "number";
  input.id = id;
  input.min = "1";
  input.step = "1";
  input.value = value;
  wrap.append(l, input);
  return wrap;
}

function customerId() { return Number($("customer").value); }

async function loadCustomers() {
  const answer = await api("GET", "/api/customers");
  if (!answer) return;
  for (const c of answer.customers) {
    $("customer").add(new Option(c.FirstName + " " + c.LastName, c.CustomerId));
  }
}

async function loadCatalogue() {
  const answer = await api("GET", "/api/products");
  if (!answer) return;
  const body = $("catalogue").tBodies[0];
  for (const p of answer.products) {
    state.productIdByName.set(p.ProductName, p.ProductId);
    const row = body.insertRow();
    cell(row, p.ProductName);
    cell(row, p.Vendor);
    cell(row, money(p.ProductPrice), "number");
    row.insertCell().append(quantityInput("qty-" + p.ProductId, "Quantity of " + p.ProductName, 1));
    row.insertCell().append(button("Add", "Add " + p.ProductName + " to the basket",
                                   () => addToBasket(p.ProductId)));
  }
}

async function showOrder() {
  const body = $("basket").tBodies[0];
  body.replaceChildren();
  $("order-total").textContent = money(0);
  if (state.orderId === null) {
    $("current-order").textContent = "No order open. Start one, or pick an open order below.";
    return;
  }
  const answer = await api("GET", "/api/orders/" + state.orderId);
  if (!answer) return;
  const order = answer.order;
  $("current-order").textContent = "Order " + order.orderId + (order.description ? " — " + order.description : "") +
      (order.orderDate ? ", started " + order.orderDate : "") +
      (order.delivery === 1 ? ", shipped for " + order.deliveryDate : ", open");
  let total = 0;
  for (const line of answer.basket.rows) {
    const productId = state.productIdByName.get(line.ProductName);
    const row = body.insertRow();
    cell(row, line.ProductName);
    cell(row, line.Vendor);
    cell(row, money(line.ProductPrice), "number");
    row.insertCell().append(quantityInput("line-" + productId, "Quantity of " + line.ProductName + " in the basket",
                                          line.Quantity));
    cell(row, money(line["Extended Price"]), "number");
    const actions = row.insertCell();
    actions.append(button("Update", "Update the quantity of " + line.ProductName, () => changeLine(productId), true),
                   button("Remove", "Remove " + line.ProductName + " from the basket", () => removeLine(productId), true));
    total += Number(line["Extended Price"] || 0);
  }
  $("order-total").textContent = money(total);
}

async function showOrders() {
  for (const [which, listId] of [["open", "open-orders"], ["shipped", "shipped-orders"]]) {
    const list = $(listId);
    list.replaceChildren();
    const response = await fetch("/api/customers/" + customerId() + "/orders?state=" + which);
    const answer = await response.json();
    if (!response.ok) { say(answer.ReturnMsg || answer.error.message, true); continue; }
    if (answer.orders.length === 0) {
      const none = document.createElement("li");
      none.textContent = "None.";
      list.append(none);
    }
    for (const o of answer.orders) {
      const item = document.createElement("li");
      item.textContent = "Order " + o.orderId + ", " + (o.orderDate || "no date") + (o.description ? " — " + o.description : "");
      item.append(button("Show", "Show order " + o.orderId, () => { state.orderId = o.orderId; showOrder(); }, true),
                  button("Delete", "Delete order " + o.orderId, () => deleteOrder(o.orderId), true));
      list.append(item);
    }
  }
}

async function startOrder(event) {
  event.preventDefault();
  const body = { customerId: customerId() };
  const description = $("description").value.trim();
  if (description) body.description = description;
  const answer = await api("POST", "/api/orders", body);
  if (!answer) return;
  state.orderId = answer.orderId;
  $("description").value = "";
  await showOrder();
  await showOrders();
  say(answer.ReturnMsg + " (order " + answer.orderId + ")", false);
}

function quantityOf(inputId) {
  const quantity = Number($(inputId).value);
  if (!Number.isInteger(quantity) || quantity < 1) {
    say("A quantity is a whole number of 1 or more.", true);
    return null;
  }
  return quantity;
}

async function afterChange(answer) {
  if (!answer) return;
  const message = answer.ReturnMsg;
  await showOrder();
  say(message, false);
}

async function addToBasket(productId) {
  if (state.orderId === null) { say("Start an order first.", true); return; }
  const quantity = quantityOf("qty-" + productId);
  if (quantity === null) return;
  await afterChange(await api("POST", "/api/orders/" + state.orderId + "/basket", { productId, quantity }));
}

async function changeLine(productId) {
  const quantity = quantityOf("line-" + productId);
  if (quantity === null) return;
  await afterChange(await api("PATCH", "/api/orders/" + state.orderId + "/basket/" + productId, { quantity }));
}

async function removeLine(productId) {
  await afterChange(await api("DELETE", "/api/orders/" + state.orderId + "/basket/" + productId));
}

async function placeOrder(event) {
  event.preventDefault();
  if (state.orderId === null) { say("Start an order first.", true); return; }
  const answer = await api("POST", "/api/orders/" + state.orderId + "/purchase",
                           { deliveryDate: $("delivery-date").value, delivery: 1 });
  if (!answer) return;
  const message = answer.ReturnMsg;
  await showOrder();
  await showOrders();
  say(message, false);
}

async function deleteOrder(orderId) {
  const answer = await api("DELETE", "/api/orders/" + orderId);
  if (!answer) return;
  const message = answer.ReturnMsg;
  if (state.orderId === orderId) state.orderId = null;
  await showOrder();
  await showOrders();
  say(message, false);
}

async function start() {
  $("start-form").addEventListener("submit", startOrder);
  $("place-form").addEventListener("submit", placeOrder);
  $("customer").addEventListener("change", () => { state.orderId = null; showOrder(); showOrders(); });
  const tomorrow = new Date(Date.now() + 86400000);
  $("delivery-date").value = tomorrow.toISOString().slice(0, 10);
  await loadCustomers();
  await loadCatalogue();
  await showOrders();
  document.body.dataset.ready = "true";
}

document.addEventListener("DOMContentLoaded", start);
